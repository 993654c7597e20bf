#include "commands/TypedLengths.h"

#include "definition/ValueText.h"

#include <cmath>
#include <limits>

namespace tabulor {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr float kTwipsPerInch = 1440;

// Half to even, as the classic conversions round, kept within 0 and the longest length.
qint32 wholeTwips(double twips)
{
    if (!(twips > 0)) // negative, zero or not a number
        return 0;
    if (twips >= double(std::numeric_limits<qint32>::max()))
        return std::numeric_limits<qint32>::max();
    return toInt32(twips).value_or(0);
}

} // namespace

qint32 spacingTwips(QStringView text)
{
    return wholeTwips(leadingNumber(text) * kTwipsPerPoint);
}

QString spacingText(qint32 twips)
{
    return shortestSingleText(float(twips / kTwipsPerPoint)) + QStringLiteral(" pt");
}

qint32 rowHeightTwips(QStringView text)
{
    const float inches = static_cast<float>(leadingNumber(text));
    return wholeTwips(double(inches * kTwipsPerInch));
}

QString rowHeightText(qint32 twips, const QString& defaultText)
{
    if (twips <= 0)
        return defaultText;
    return shortestSingleText(float(twips) / kTwipsPerInch) + u'"';
}

} // namespace tabulor
