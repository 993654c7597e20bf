#pragma once

#include <QVariant>
#include <QtGlobal>

namespace tabulor {

// Column types as a Jet file stores them (the libmdb MDB_* codes) beyond those libmdb names.
inline constexpr int JetBigIntType = 0x13;

// The field type code for a Jet column type; Text for a type this version cannot read, whose
// values are all empty.
qint16 fieldTypeForJetColumn(int columnType);

// Whether the values of a column type are read by this version.
bool isReadableJetColumn(int columnType);

// A Jet date: days since 1899-12-30 as a double, the fraction the time of day (also before
// 1899-12-30, where -1.25 is 1899-12-29 06:00). A date at midnight gives a QDate, any other
// a QDateTime in UTC (so that no time zone shifts it), rounded to the second. Values outside
// the years 100 to 9999 give a null QVariant.
QVariant jetDateValue(double serial);

// A fixed-size value of a Jet row: byte, integer, long, big integer, currency (as Currency),
// single, double, date, GUID (as "{...}" text) or decimal with the given scale. A null QVariant
// when the bytes do not fit the type or the type has no fixed size.
QVariant jetFixedValue(int columnType, const unsigned char* data, int length, int scale);

} // namespace tabulor
