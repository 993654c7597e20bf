#include "production/data/postgres/PostgresValues.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/base/IsoDateTime.h"
#include "production/data/BinaryValue.h"

#include <QDate>
#include <QRegularExpression>

#include <limits>

namespace tabulor {

namespace {

// Type OIDs are fixed by the server's catalog.
enum PostgresType : quint32
{
    BoolOid = 16,
    ByteaOid = 17,
    Int8Oid = 20,
    Int2Oid = 21,
    Int4Oid = 23,
    OidOid = 26,
    Float4Oid = 700,
    Float8Oid = 701,
    MoneyOid = 790,
    DateOid = 1082,
    TimeOid = 1083,
    TimestampOid = 1114,
    TimestampTzOid = 1184,
    NumericOid = 1700,
    UuidOid = 2950,
};

// Floats and numerics write their special values as words.
double readDouble(QByteArrayView text)
{
    if (text == "NaN")
        return std::numeric_limits<double>::quiet_NaN();
    if (text == "Infinity")
        return std::numeric_limits<double>::infinity();
    if (text == "-Infinity")
        return -std::numeric_limits<double>::infinity();
    return text.toDouble();
}

// The server writes a zone offset as "+HH", "+HH:MM" or "+HH:MM:SS"; whole hours get their
// minutes so that the ISO reader takes them.
QVariant readDateTime(const QString& text)
{
    static const QRegularExpression wholeHours(QStringLiteral("[+-]\\d\\d$"));
    if (text.size() > 10 && wholeHours.match(text).hasMatch())
        return parseIsoDateTime(QString(text + QStringLiteral(":00")));
    return parseIsoDateTime(text);
}

} // namespace

qint16 fieldTypeForPostgresType(quint32 typeOid)
{
    switch (typeOid) {
    case BoolOid:
        return FieldBoolean;
    case Int2Oid:
        return FieldInteger;
    case Int4Oid:
        return FieldLong;
    case Int8Oid:
    case OidOid:
        return FieldBigInt;
    case Float4Oid:
        return FieldSingle;
    case Float8Oid:
        return FieldDouble;
    case NumericOid:
        return FieldDecimal;
    case MoneyOid:
        return FieldCurrency;
    case DateOid:
    case TimeOid:
    case TimestampOid:
    case TimestampTzOid:
        return FieldDate;
    case ByteaOid:
        return FieldLongBinary;
    case UuidOid:
        return FieldGuid;
    default:
        return FieldText;
    }
}

bool postgresValueIsText(qint16 fieldType)
{
    switch (fieldType) {
    case FieldBoolean:
    case FieldInteger:
    case FieldLong:
    case FieldBigInt:
    case FieldSingle:
    case FieldDouble:
    case FieldDecimal:
    case FieldCurrency:
    case FieldDate:
    case FieldLongBinary:
        return false;
    default:
        return true;
    }
}

QVariant postgresValue(QByteArrayView text, qint16 fieldType)
{
    if (postgresValueIsText(fieldType))
        return QString::fromUtf8(text);
    switch (fieldType) {
    case FieldBoolean:
        return text == "t";
    case FieldInteger:
    case FieldLong:
        return text.toInt();
    case FieldBigInt:
        return text.toLongLong();
    case FieldSingle:
    case FieldDouble:
    case FieldDecimal:
        return readDouble(text);
    case FieldCurrency: {
        // Money is read as numeric; amounts beyond the exact range stay approximate.
        const QString amount = QString::fromLatin1(text);
        if (const std::optional<Currency> exact = Currency::fromString(amount))
            return QVariant::fromValue(*exact);
        return readDouble(text);
    }
    case FieldDate: {
        const QString when = QString::fromLatin1(text);
        const QVariant value = readDateTime(when);
        return value.isValid() ? value : QVariant(when);
    }
    default: // LongBinary: the hex output, "\x" and two digits a byte
        return binaryValue(std::max<qsizetype>(text.size() - 2, 0) / 2);
    }
}

} // namespace tabulor
