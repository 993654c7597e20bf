#include "production/SqliteValues.h"

#include "production/FieldType.h"

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

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The number written with `count` digits at `pos`, or -1 when any of them is missing.
int digits(QStringView text, qsizetype pos, int count)
{
    if (pos + count > text.size())
        return -1;
    int value = 0;
    for (qsizetype i = pos; i < pos + count; ++i) {
        if (!isAsciiDigit(text[i]))
            return -1;
        value = value * 10 + (text[i].unicode() - u'0');
    }
    return value;
}

// Reads "HH:MM[:SS[.fff...]]" at `pos`; *end is set to the first character after it.
QTime readTime(QStringView text, qsizetype pos, qsizetype* end)
{
    const int hours = digits(text, pos, 2);
    const int minutes = digits(text, pos + 3, 2);
    if (hours < 0 || minutes < 0 || text[pos + 2] != u':')
        return {};
    qsizetype next = pos + 5;
    int seconds = 0;
    int milliseconds = 0;
    if (next < text.size() && text[next] == u':') {
        seconds = digits(text, next + 1, 2);
        if (seconds < 0)
            return {};
        next += 3;
        if (next < text.size() && text[next] == u'.') {
            // Any number of fraction digits; the first three are the milliseconds.
            qsizetype fractionEnd = next + 1;
            while (fractionEnd < text.size() && isAsciiDigit(text[fractionEnd]))
                ++fractionEnd;
            if (fractionEnd == next + 1)
                return {};
            for (qsizetype i = next + 1; i < next + 4; ++i)
                milliseconds = milliseconds * 10 + (i < fractionEnd ? text[i].unicode() - u'0' : 0);
            next = fractionEnd;
        }
    }
    *end = next;
    return QTime(hours, minutes, seconds, milliseconds);
}

// The zone written after a time: nothing, "Z" or "+HH:MM"/"-HH:MM".
QVariant withZone(QDate date, QTime time, QStringView zone)
{
    if (zone.isEmpty() || zone == u"Z")
        return QDateTime(date, time, Qt::UTC);
    const int hours = digits(zone, 1, 2);
    const int minutes = digits(zone, 4, 2);
    if (zone.size() != 6 || (zone[0] != u'+' && zone[0] != u'-') || zone[3] != u':' || hours < 0 ||
        minutes < 0)
        return {};
    const int offset = (hours * 60 + minutes) * 60 * (zone[0] == u'-' ? -1 : 1);
    return QDateTime(date, time, Qt::OffsetFromUTC, offset);
}

} // namespace

bool isFractional(qint16 fieldType)
{
    switch (fieldType) {
    case FieldCurrency:
    case FieldSingle:
    case FieldDouble:
    case FieldFloat:
    case FieldDecimal:
    case FieldNumeric:
        return true;
    default:
        return false;
    }
}

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
    case SQLITE_BLOB: {
        // The pointer first, then the size: asking for the size may not convert the value.
        const auto* data = static_cast<const char*>(sqlite3_value_blob(value));
        return QByteArray(data, sqlite3_value_bytes(value));
    }
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

QVariant parseIsoDateTime(QStringView text)
{
    qsizetype end = 0;
    if (text.size() >= 5 && text[2] == u':') {
        const QTime time = readTime(text, 0, &end);
        return time.isValid() && end == text.size() ? QVariant(time) : QVariant();
    }
    const int year = digits(text, 0, 4);
    const int month = digits(text, 5, 2);
    const int day = digits(text, 8, 2);
    if (year < 0 || month < 0 || day < 0 || text[4] != u'-' || text[7] != u'-')
        return {};
    const QDate date(year, month, day);
    if (!date.isValid())
        return {};
    if (text.size() == 10)
        return date;
    if (text[10] != u'T' && text[10] != u' ')
        return {};
    const QTime time = readTime(text, 11, &end);
    if (!time.isValid())
        return {};
    return withZone(date, time, text.mid(end));
}

} // namespace tabulor
