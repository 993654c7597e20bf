#include "production/formats/FormatDecimal.h"

#include <charconv>
#include <cstdlib>

namespace tabulor {

namespace {

int digitValue(QChar c)
{
    return c >= u'0' && c <= u'9' ? c.unicode() - u'0' : -1;
}

// Exponents beyond this are no number a cell can hold.
constexpr int kMaxExponent = 4000;

} // namespace

FormatDecimal FormatDecimal::fromUnsigned(quint64 value)
{
    std::array<qint8, 20> reversed{};
    int length = 0;
    for (; value > 0; value /= 10)
        reversed[length++] = static_cast<qint8>(value % 10);
    FormatDecimal result;
    for (int i = length - 1; i >= 0; --i)
        result.appendDigit(reversed[i]);
    result.m_point = length;
    result.trim();
    return result;
}

FormatDecimal FormatDecimal::fromDouble(double value, int significantDigits)
{
    FormatDecimal result;
    if (value == 0)
        return result;
    // Scientific notation puts exactly one digit before the point: "1.2345e+03".
    char text[64];
    const std::to_chars_result written =
        significantDigits > 0
            ? std::to_chars(text, std::end(text), value, std::chars_format::scientific,
                            significantDigits - 1)
            : std::to_chars(text, std::end(text), value, std::chars_format::scientific);
    const char* c = text;
    for (; c != written.ptr && *c != 'e'; ++c) {
        if (*c != '.')
            result.appendDigit(*c - '0');
    }
    ++c; // 'e'
    const bool negativeExponent = *c == '-';
    int exponent = 0;
    std::from_chars(c + 1, written.ptr, exponent);
    result.m_point = (negativeExponent ? -exponent : exponent) + 1;
    result.trim();
    return result;
}

std::optional<FormatDecimal::Signed>
FormatDecimal::parse(QStringView text, QStringView decimalSeparator, QStringView thousandsSeparator)
{
    text = text.trimmed();
    Signed result;
    FormatDecimal& number = result.magnitude;
    qsizetype i = 0;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        result.negative = text[i++] == u'-';

    bool anyDigit = false;
    int groupDigits = 0; // digits since the last thousands separator
    bool grouped = false;
    const auto takeDigit = [&](int digit, bool fraction) {
        anyDigit = true;
        if (number.m_count == 0 && digit == 0) {
            if (fraction)
                --number.m_point;
            return;
        }
        number.appendDigit(digit);
        if (!fraction)
            ++number.m_point;
    };
    for (; i < text.size(); ++i) {
        const int digit = digitValue(text[i]);
        if (digit >= 0) {
            takeDigit(digit, false);
            ++groupDigits;
        } else if (!thousandsSeparator.isEmpty() && text.sliced(i).startsWith(thousandsSeparator)) {
            if (groupDigits == 0 || (grouped ? groupDigits != 3 : groupDigits > 3))
                return std::nullopt;
            grouped = true;
            groupDigits = 0;
            i += thousandsSeparator.size() - 1;
        } else {
            break;
        }
    }
    if (grouped && groupDigits != 3)
        return std::nullopt;
    if (!decimalSeparator.isEmpty() && text.sliced(i).startsWith(decimalSeparator)) {
        for (i += decimalSeparator.size(); i < text.size() && digitValue(text[i]) >= 0; ++i)
            takeDigit(digitValue(text[i]), true);
    }
    if (!anyDigit)
        return std::nullopt;
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        bool negativeExponent = false;
        if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
            negativeExponent = text[i++] == u'-';
        if (i == text.size())
            return std::nullopt;
        int exponent = 0;
        for (; i < text.size() && digitValue(text[i]) >= 0; ++i) {
            exponent = exponent * 10 + digitValue(text[i]);
            if (exponent > kMaxExponent)
                return std::nullopt;
        }
        number.shift(negativeExponent ? -exponent : exponent);
    }
    if (i != text.size())
        return std::nullopt;
    number.trim();
    return result;
}

double FormatDecimal::toDouble() const
{
    if (m_count == 0)
        return 0;
    // "0.<digits>e<point>" is read back exactly as written.
    char text[kMaxDigits + 16] = {'0', '.'};
    char* end = text + 2;
    for (int i = 0; i < m_count; ++i)
        *end++ = static_cast<char>('0' + m_digits[i]);
    *end++ = 'e';
    end = std::to_chars(end, std::end(text), m_point).ptr;
    double value = 0;
    std::from_chars(text, end, value);
    return value;
}

void FormatDecimal::roundToDigits(int keep)
{
    if (m_count <= keep)
        return;
    if (keep < 0) {
        *this = FormatDecimal();
        return;
    }
    const bool up = m_digits[keep] >= 5;
    m_count = keep;
    if (up) {
        int i = keep - 1;
        while (i >= 0 && m_digits[i] == 9)
            --i;
        if (i < 0) { // 0.999 -> 1.000: one digit more before the point
            m_digits[0] = 1;
            m_count = 1;
            ++m_point;
            return;
        }
        ++m_digits[i];
        m_count = i + 1;
    }
    trim();
}

void FormatDecimal::trim()
{
    while (m_count > 0 && m_digits[m_count - 1] == 0)
        --m_count;
    if (m_count == 0)
        m_point = 0;
}

} // namespace tabulor
