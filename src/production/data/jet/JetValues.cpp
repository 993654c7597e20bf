#include "production/data/jet/JetValues.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"

#include <QDateTime>
#include <QtEndian>

#include <mdbtools.h>

#include <charconv>
#include <cmath>

namespace tabulor {

namespace {

// 0100-01-01 and 10000-01-01 as Jet day numbers: the range of dates a Jet file can hold.
constexpr double FirstJetDay = -657434;
constexpr double EndOfJetDays = 2958466;
constexpr qint64 SecondsPerDay = 86400;
constexpr int DecimalBytes = 17;

// A single as the shortest decimal that reads back as the same single, so that 0.15 stays
// 0.15 as a double instead of 0.15000000596.
double singleAsDouble(float value)
{
    if (!std::isfinite(value))
        return double(value);
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, value);
    double result = 0;
    std::from_chars(text, written.ptr, result);
    return result;
}

// A decimal: a sign byte, then a 96-bit magnitude in four little-endian 32-bit words, the
// most significant word first (the first of them is always zero).
QVariant decimalValue(const unsigned char* data, int scale)
{
    double magnitude = 0;
    for (int word = 0; word < 4; ++word)
        magnitude = magnitude * 4294967296.0 + qFromLittleEndian<quint32>(data + 1 + 4 * word);
    const double value = magnitude / std::pow(10.0, scale);
    return (data[0] & 0x80) ? -value : value;
}

QString guidText(const unsigned char* b)
{
    // The first three groups are little-endian numbers, the last two plain bytes.
    return QStringLiteral("{%1-%2-%3-%4-%5}")
        .arg(qFromLittleEndian<quint32>(b), 8, 16, QChar(u'0'))
        .arg(qFromLittleEndian<quint16>(b + 4), 4, 16, QChar(u'0'))
        .arg(qFromLittleEndian<quint16>(b + 6), 4, 16, QChar(u'0'))
        .arg(QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(b + 8), 2).toHex()))
        .arg(QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(b + 10), 6).toHex()))
        .toUpper();
}

} // namespace

qint16 fieldTypeForJetColumn(int columnType)
{
    switch (columnType) {
    case MDB_BOOL:
        return FieldBoolean;
    case MDB_BYTE:
        return FieldByte;
    case MDB_INT:
        return FieldInteger;
    case MDB_LONGINT:
        return FieldLong;
    case MDB_MONEY:
        return FieldCurrency;
    case MDB_FLOAT:
        return FieldSingle;
    case MDB_DOUBLE:
        return FieldDouble;
    case MDB_DATETIME:
        return FieldDate;
    case MDB_BINARY:
        return FieldBinary;
    case MDB_OLE:
        return FieldLongBinary;
    case MDB_MEMO:
        return FieldMemo;
    case MDB_REPID:
        return FieldGuid;
    case MDB_NUMERIC:
        return FieldDecimal;
    case JetBigIntType:
        return FieldBigInt;
    default:
        return FieldText;
    }
}

bool isReadableJetColumn(int columnType)
{
    return columnType == MDB_TEXT || fieldTypeForJetColumn(columnType) != FieldText;
}

QVariant jetDateValue(double serial)
{
    if (!(serial >= FirstJetDay && serial < EndOfJetDays))
        return {};
    // The whole part counts days either side of 1899-12-30; the fraction is always the time
    // of day, also for negative values.
    const double day = std::trunc(serial);
    qint64 seconds = std::llround(std::fabs(serial - day) * SecondsPerDay);
    qint64 days = qint64(day);
    // A time that rounds up to midnight is the start of the following day.
    if (seconds >= SecondsPerDay) {
        seconds -= SecondsPerDay;
        ++days;
    }
    const QDate date = QDate(1899, 12, 30).addDays(days);
    if (seconds == 0)
        return date;
    return QDateTime(date, QTime(0, 0).addSecs(int(seconds)), Qt::UTC);
}

QVariant jetFixedValue(int columnType, const unsigned char* data, int length, int scale)
{
    const auto fits = [length](int size) { return length >= size; };
    switch (columnType) {
    case MDB_BYTE:
        return fits(1) ? QVariant(int(data[0])) : QVariant();
    case MDB_INT:
        return fits(2) ? QVariant(int(qFromLittleEndian<qint16>(data))) : QVariant();
    case MDB_LONGINT:
        return fits(4) ? QVariant(qFromLittleEndian<qint32>(data)) : QVariant();
    case JetBigIntType:
        return fits(8) ? QVariant(qFromLittleEndian<qint64>(data)) : QVariant();
    case MDB_MONEY:
        return fits(8) ? QVariant::fromValue(Currency{qFromLittleEndian<qint64>(data)})
                       : QVariant();
    case MDB_FLOAT:
        return fits(4) ? QVariant(singleAsDouble(qFromLittleEndian<float>(data))) : QVariant();
    case MDB_DOUBLE:
        return fits(8) ? QVariant(qFromLittleEndian<double>(data)) : QVariant();
    case MDB_DATETIME:
        return fits(8) ? jetDateValue(qFromLittleEndian<double>(data)) : QVariant();
    case MDB_REPID:
        return fits(16) ? QVariant(guidText(data)) : QVariant();
    case MDB_NUMERIC:
        return fits(DecimalBytes) ? decimalValue(data, scale) : QVariant();
    default:
        return {};
    }
}

} // namespace tabulor
