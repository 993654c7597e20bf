#include "production/formats/FormatNumber.h"

#include <algorithm>

namespace tabulor {

namespace {

void appendDigit(FormatOutput& out, int digit)
{
    out += char16_t(u'0' + digit);
}

} // namespace

void appendPadded(FormatOutput& out, qint64 value, int width)
{
    char16_t digits[24];
    int length = 0;
    do {
        digits[length++] = static_cast<char16_t>(u'0' + value % 10);
        value /= 10;
    } while (value > 0);
    for (int i = length; i < width; ++i)
        out += u'0';
    while (length > 0)
        out += QChar(digits[--length]);
}

void appendNumber(FormatOutput& out, const FormatSection& section, FormatDecimal magnitude,
                  const FormatLocale& locale)
{
    magnitude.shift(section.powerShift);
    int exponent = 0;
    if (section.scientific) {
        if (!magnitude.isZero()) {
            magnitude.roundToSignificant(
                std::max(section.mantissaDigits + section.fractionPlaceholders, 1));
            exponent = magnitude.pointPosition() - section.mantissaDigits;
            magnitude.shift(-exponent);
        }
    } else {
        magnitude.roundToPlaces(section.fractionPlaceholders);
    }
    const int integerDigits = std::max(magnitude.pointPosition(), section.minIntegerDigits);
    const int fractionDigits =
        std::max(section.minFractionDigits,
                 std::min(magnitude.fractionDigitCount(), section.fractionPlaceholders));

    for (const FormatToken& token : section.tokens) {
        switch (token.op) {
        case FormatOp::Literal:
            out += section.literal(token);
            break;
        case FormatOp::IntegerDigit: {
            // The leftmost placeholder shows every digit the others have no room for.
            const int highest = token.b ? integerDigits - 1 : std::min(token.a, integerDigits - 1);
            for (int power = highest; power >= token.a; --power) {
                appendDigit(out, magnitude.digitAtPower(power));
                if (section.grouping && power > 0 && power % 3 == 0)
                    out += locale.thousandsSeparator;
            }
            break;
        }
        case FormatOp::DecimalPoint:
            out += locale.decimalSeparator;
            break;
        case FormatOp::FractionDigit:
            if (token.a < fractionDigits)
                appendDigit(out, magnitude.digitAtPower(-1 - token.a));
            break;
        case FormatOp::Exponent:
            out += token.b & ExponentUpper ? u'E' : u'e';
            if (exponent < 0)
                out += u'-';
            else if (token.b & ExponentPlus)
                out += u'+';
            appendPadded(out, std::abs(exponent), token.a);
            break;
        default:
            break;
        }
    }
}

void appendPlainNumber(FormatOutput& out, const FormatDecimal& magnitude, bool allowScientific,
                       const FormatLocale& locale)
{
    const int point = magnitude.pointPosition();
    const int count = magnitude.digitCount();
    if (magnitude.isZero()) {
        out += u'0';
        return;
    }
    const int exponent = point - 1;
    if (allowScientific && (exponent >= 15 || exponent < -4)) {
        appendDigit(out, magnitude.digitAtPower(exponent));
        if (count > 1)
            out += locale.decimalSeparator;
        for (int i = 1; i < count; ++i)
            appendDigit(out, magnitude.digitAtPower(exponent - i));
        out += exponent < 0 ? QStringView(u"E-") : QStringView(u"E+");
        appendPadded(out, std::abs(exponent), 2);
        return;
    }
    if (point <= 0)
        out += u'0';
    for (int power = point - 1; power >= 0; --power)
        appendDigit(out, magnitude.digitAtPower(power));
    if (count > point) {
        out += locale.decimalSeparator;
        for (int power = -1; power >= point - count; --power)
            appendDigit(out, magnitude.digitAtPower(power));
    }
}

} // namespace tabulor
