#include "production/base/Currency.h"
#include "production/formats/DisplayFormat.h"
#include "production/formats/FormatLocale.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

using namespace tabulor;

namespace {

QVariant money(qint64 tenThousandths)
{
    return QVariant::fromValue(Currency{tenThousandths});
}

// A few values of every kind a cell holds, the edges of each range among them.
const std::vector<QVariant>& everyKind()
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr qint64 kLowest = std::numeric_limits<qint64>::min();
    constexpr qint64 kHighest = std::numeric_limits<qint64>::max();
    static const std::vector<QVariant> values = {
        QVariant(),
        true,
        false,
        0,
        -1,
        123456789,
        kLowest,
        kHighest,
        std::numeric_limits<quint64>::max(),
        0.0,
        -0.0,
        1234.5678,
        -0.000125,
        1e300,
        -5e-324,
        std::numeric_limits<double>::quiet_NaN(),
        kInfinity,
        -kInfinity,
        3.25f,
        money(0),
        money(-12345678),
        money(kLowest),
        money(kHighest),
        QDate(1958, 12, 7),
        QDate(100, 1, 1),
        QDate(9999, 12, 31),
        QDate(1899, 12, 30),
        QDate(),
        QTime(20, 50, 35),
        QTime(0, 0),
        QTime(23, 59, 59, 999),
        QDateTime(QDate(1958, 12, 7), QTime(20, 50, 35)),
        QDateTime(QDate(1, 1, 1), QTime(0, 0, 1)),
        QString(),
        QStringLiteral("hello"),
        QStringLiteral("-1,234.5"),
        QStringLiteral("1e400"),
        QStringLiteral("1996-07-04T13:30:00"),
    };
    return values;
}

// The next sizeof(T) bytes of the input as a T, zeros past its end.
template <typename T> T take(std::span<const uint8_t>& bytes)
{
    T value{};
    const size_t taken = std::min(sizeof(T), bytes.size());
    if (taken > 0)
        std::memcpy(&value, bytes.data(), taken);
    bytes = bytes.subspan(taken);
    return value;
}

// One value of each kind made from the input's bytes after the format.
std::vector<QVariant> valuesFrom(std::span<const uint8_t> bytes)
{
    const auto integer = take<qint64>(bytes);
    const auto real = take<double>(bytes);
    const QDate date = QDate::fromJulianDay(take<qint32>(bytes));
    const QTime time = QTime::fromMSecsSinceStartOfDay(int(take<quint32>(bytes) % 86'400'000));
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size()));
    return {integer, real, float(real), money(integer), date, time, QDateTime(date, time), text};
}

const std::vector<FormatLocale>& locales()
{
    static const std::vector<FormatLocale> all = {
        FormatLocale::fromQLocale(QLocale(QLocale::English, QLocale::UnitedStates)),
        FormatLocale::fromQLocale(QLocale(QLocale::German, QLocale::Switzerland)),
        FormatLocale::fromQLocale(QLocale(QLocale::Persian, QLocale::Iran)),
    };
    return all;
}

} // namespace

// A display format compiled from the input's text up to its first zero byte, then applied in a
// few locales to a few values of every kind and to values made from the bytes after it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto* text = reinterpret_cast<const char*>(data);
    const auto* end = static_cast<const char*>(std::memchr(text, 0, size));
    const size_t formatSize = end ? size_t(end - text) : size;
    const DisplayFormat format(QString::fromUtf8(text, qsizetype(formatSize)));

    const size_t valuesStart = end ? formatSize + 1 : size;
    std::vector<QVariant> values = everyKind();
    if (valuesStart < size)
        std::ranges::move(valuesFrom({data + valuesStart, size - valuesStart}),
                          std::back_inserter(values));
    for (const FormatLocale& locale : locales()) {
        for (const QVariant& value : values)
            format.apply(value, locale);
    }
    return 0;
}
