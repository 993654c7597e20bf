#include "production/data/sqlite/SqliteValues.h"

#include "production/base/FieldType.h"
#include "production/base/IsoDateTime.h"
#include "production/data/BinaryValue.h"

#include <QByteArray>
#include <QDateTime>

#include <sqlite3.h>

namespace tabulor {

namespace {

struct NamedType
{
    const char* name;
    FieldType type;
};

constexpr NamedType KnownTypes[] = {
    {"BOOLEAN", FieldBoolean},
    {"BOOL", FieldBoolean},
    {"BIT", FieldBoolean},
    {"LOGICAL", FieldBoolean},
    {"YESNO", FieldBoolean},
    {"TINYINT", FieldByte},
    {"BYTE", FieldByte},
    {"SMALLINT", FieldInteger},
    {"INT2", FieldInteger},
    {"INTEGER", FieldLong},
    {"INT", FieldLong},
    {"INT4", FieldLong},
    {"MEDIUMINT", FieldLong},
    {"BIGINT", FieldBigInt},
    {"INT8", FieldBigInt},
    {"UNSIGNED BIG INT", FieldBigInt},
    {"MONEY", FieldCurrency},
    {"SMALLMONEY", FieldCurrency},
    {"CURRENCY", FieldCurrency},
    {"SINGLE", FieldSingle},
    {"FLOAT4", FieldSingle},
    {"REAL", FieldDouble},
    {"DOUBLE", FieldDouble},
    {"FLOAT", FieldDouble},
    {"FLOAT8", FieldDouble},
    {"DECIMAL", FieldDecimal},
    {"DEC", FieldDecimal},
    {"NUMERIC", FieldNumeric},
    {"NUMBER", FieldNumeric},
    {"DATE", FieldDate},
    {"DATETIME", FieldDate},
    {"SMALLDATETIME", FieldDate},
    {"TIMESTAMP", FieldDate},
    {"TIME", FieldDate},
    {"TEXT", FieldText},
    {"CHAR", FieldText},
    {"CHARACTER", FieldText},
    {"VARCHAR", FieldText},
    {"NCHAR", FieldText},
    {"NVARCHAR", FieldText},
    {"STRING", FieldText},
    {"CLOB", FieldMemo},
    {"NCLOB", FieldMemo},
    {"MEMO", FieldMemo},
    {"NTEXT", FieldMemo},
    {"MEDIUMTEXT", FieldMemo},
    {"LONGTEXT", FieldMemo},
    {"LONGCHAR", FieldMemo},
    {"BINARY", FieldBinary},
    {"VARBINARY", FieldBinary},
    {"BLOB", FieldLongBinary},
    {"MEDIUMBLOB", FieldLongBinary},
    {"LONGBLOB", FieldLongBinary},
    {"LONGBINARY", FieldLongBinary},
    {"IMAGE", FieldLongBinary},
    {"BYTEA", FieldLongBinary},
    {"GUID", FieldGuid},
    {"UUID", FieldGuid},
    {"UNIQUEIDENTIFIER", FieldGuid},
};

std::optional<qint16> knownType(const QByteArray& name)
{
    for (const NamedType& known : KnownTypes) {
        if (name == known.name)
            return known.type;
    }
    return std::nullopt;
}

} // namespace

std::optional<qint16> fieldTypeForDeclaredType(QByteArrayView declared)
{
    // The name without its size or precision: "NUMERIC (10, 2)" is a NUMERIC.
    const QByteArray upper = declared.toByteArray().toUpper();
    const QByteArray name =
        upper.first(upper.contains('(') ? upper.indexOf('(') : upper.size()).simplified();
    if (name.isEmpty())
        return std::nullopt;
    if (const auto type = knownType(name))
        return type;
    if (const auto type = knownType(name.split(' ').constFirst()))
        return type;
    if (name.contains("INT"))
        return FieldLong;
    if (name.contains("CHAR") || name.contains("CLOB") || name.contains("TEXT"))
        return FieldText;
    if (name.contains("BLOB"))
        return FieldLongBinary;
    if (name.contains("REAL") || name.contains("FLOA") || name.contains("DOUB"))
        return FieldDouble;
    return std::nullopt;
}

qint16 fieldTypeForStorageClass(int storageClass)
{
    switch (storageClass) {
    case SQLITE_INTEGER:
        return FieldBigInt;
    case SQLITE_FLOAT:
        return FieldDouble;
    case SQLITE_BLOB:
        return FieldLongBinary;
    default:
        return FieldText;
    }
}

QVariant columnValue(sqlite3_stmt* statement, int column, qint16 fieldType)
{
    return sqliteValue(sqlite3_column_value(statement, column), fieldType);
}

QVariant sqliteValue(sqlite3_value* value, qint16 fieldType)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER: {
        const qint64 number = sqlite3_value_int64(value);
        if (fieldType == FieldBoolean)
            return number != 0;
        if (isFractional(fieldType))
            return double(number);
        return number;
    }
    case SQLITE_FLOAT: {
        const double number = sqlite3_value_double(value);
        if (fieldType == FieldBoolean)
            return number != 0.0;
        return number;
    }
    case SQLITE_BLOB:
        return binaryValue(sqlite3_value_bytes(value));
    default: {
        const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const QString text = QString::fromUtf8(data, sqlite3_value_bytes(value));
        if (fieldType == FieldDate) {
            QVariant when = parseIsoDateTime(text);
            if (when.isValid())
                return when;
        }
        return text;
    }
    }
}

} // namespace tabulor
