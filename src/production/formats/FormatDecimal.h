#pragma once

#include <QStringView>
#include <QtGlobal>

#include <array>
#include <optional>

namespace tabulor {

// A non-negative number as display formats work on it: decimal digits without leading or
// trailing zeros and the position of the decimal point, so that the value is
// 0.d1 d2 d3 ... x 10^pointPosition. Zero has no digits. Rounding, percent and scaling work on
// these digits exactly, never on binary fractions.
class FormatDecimal
{
public:
    // Digits beyond this many are dropped; no source carries that much precision.
    static constexpr int kMaxDigits = 40;

    static FormatDecimal fromUnsigned(quint64 value);
    // A finite, non-negative double at `significantDigits` digits (15 for doubles, 7 for
    // singles, as the classic formats see them), or at the fewest digits that read back as the
    // same double when `significantDigits` is 0.
    static FormatDecimal fromDouble(double value, int significantDigits);

    struct Signed;
    // Reads a number written with the given separators ("-1,234.5", "2.5e3"); nothing for any
    // other text, or grouping that is not in threes.
    static std::optional<Signed> parse(QStringView text, QStringView decimalSeparator,
                                       QStringView thousandsSeparator);

    bool isZero() const { return m_count == 0; }
    int digitCount() const { return m_count; }
    int pointPosition() const { return m_point; }
    // Significant digits after the decimal point.
    int fractionDigitCount() const { return m_count > m_point ? m_count - m_point : 0; }
    // The digit (0 to 9) that stands for 10^power.
    int digitAtPower(int power) const
    {
        const int index = m_point - 1 - power;
        return index >= 0 && index < m_count ? m_digits[index] : 0;
    }
    double toDouble() const;

    // Multiplies by 10^powers.
    void shift(int powers)
    {
        if (m_count > 0)
            m_point += powers;
    }
    // Rounds half away from zero to `places` digits after the decimal point, or to
    // `digits` significant digits.
    void roundToPlaces(int places) { roundToDigits(m_point + places); }
    void roundToSignificant(int digits) { roundToDigits(digits); }

private:
    void roundToDigits(int keep);
    void appendDigit(int digit)
    {
        if (m_count < kMaxDigits)
            m_digits[m_count++] = static_cast<qint8>(digit);
    }
    void trim();

    std::array<qint8, kMaxDigits> m_digits{};
    int m_count = 0;
    int m_point = 0;
};

struct FormatDecimal::Signed
{
    FormatDecimal magnitude;
    bool negative = false;
};

} // namespace tabulor
