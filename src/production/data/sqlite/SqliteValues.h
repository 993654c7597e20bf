#pragma once

#include <QByteArrayView>
#include <QStringView>
#include <QVariant>

#include <optional>

struct sqlite3_stmt;
struct sqlite3_value;

namespace tabulor {

// The field type that a column's declared type stands for, or nullopt when the declaration
// tells nothing (an expression in a view, or a type name without a recognisable word).
// Exact names come first, then the first word ("DOUBLE PRECISION", "TIMESTAMP WITH TIME ZONE"),
// then the engine's own affinity rules (a name containing INT is an integer, and so on).
// INTEGER and INT map to Long: in schemas they name keys, counts and quantities, as Long does
// in the classic codes; BIGINT and INT8 map to BigInt. Values are 64-bit either way.
std::optional<qint16> fieldTypeForDeclaredType(QByteArrayView declared);

// The field type for a column without a usable declaration, from the storage class (an
// SQLITE_* type code) of its value in the first row: an undeclared integer may use all 64
// bits, so it is BigInt; NULL or no row at all gives Text.
qint16 fieldTypeForStorageClass(int storageClass);

// The current row's value of a column, typed for a field of the given type: integers as
// qint64, reals as double, text as QString, blobs as BinaryValue, NULL as a null QVariant.
// Boolean fields give bool; the fractional number types (Currency, Single, Double, Float,
// Decimal, Numeric) give double even where the engine stored a whole number as an integer;
// Date fields holding ISO text give QDate, QDateTime or QTime, and keep any other text as is.
QVariant columnValue(sqlite3_stmt* statement, int column, qint16 fieldType);
// The same for a value handed to an SQL function.
QVariant sqliteValue(sqlite3_value* value, qint16 fieldType);

} // namespace tabulor
