#include "production/formats/DisplayFormat.h"

#include "production/base/Currency.h"
#include "production/formats/FormatDateTime.h"
#include "production/formats/FormatDecimal.h"
#include "production/formats/FormatNumber.h"
#include "production/formats/FormatProgram.h"
#include "production/formats/FormatText.h"

#include <cmath>

namespace tabulor {

namespace {

// Digits that the classic formats take from binary floating-point numbers: 15 for doubles, 7
// for singles. Beyond them the digits are noise of the binary fraction, so that 2.675 rounds
// to 2.68, as written.
constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

// The value a number, date or literal section works on.
struct Operand
{
    FormatDecimal magnitude;
    bool negative = false;
    std::optional<DateTimeValue> dateTime;
    double serial = 0; // of dateTime

    bool isZero() const { return dateTime ? serial == 0 : magnitude.isZero(); }
    FormatDecimal number() const
    {
        return dateTime ? FormatDecimal::fromDouble(std::abs(serial), kDoubleDigits) : magnitude;
    }
    std::optional<DateTimeValue> date() const
    {
        if (dateTime)
            return dateTime;
        const double value = magnitude.toDouble();
        return dateTimeFromSerial(negative ? -value : value);
    }

    static Operand fromDateTime(const DateTimeValue& value)
    {
        Operand operand;
        operand.dateTime = value;
        operand.serial = serialOf(value);
        operand.negative = operand.serial < 0;
        return operand;
    }
};

FormatDecimal::Signed signedMagnitude(qint64 value)
{
    // Through unsigned arithmetic, so that the most negative value has a magnitude too.
    const quint64 magnitude = value < 0 ? 0 - static_cast<quint64>(value) : quint64(value);
    return {FormatDecimal::fromUnsigned(magnitude), value < 0};
}

// Booleans are numbers too: True is -1, as in the classic formats.
std::optional<FormatDecimal::Signed> numberOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return signedMagnitude(value.toBool() ? -1 : 0);
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return signedMagnitude(value.toLongLong());
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return FormatDecimal::Signed{FormatDecimal::fromUnsigned(value.toULongLong()), false};
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        if (!std::isfinite(number))
            return std::nullopt;
        const int digits = value.typeId() == QMetaType::Float ? kSingleDigits : kDoubleDigits;
        return FormatDecimal::Signed{FormatDecimal::fromDouble(std::abs(number), digits),
                                     number < 0};
    }
    default:
        if (value.metaType() == QMetaType::fromType<Currency>()) {
            const qint64 units = value.value<Currency>().tenThousandths;
            FormatDecimal::Signed result = signedMagnitude(units);
            result.magnitude.shift(-4);
            return result;
        }
        return std::nullopt;
    }
}

// Texts that read as numbers are formatted as numbers; with a date section in the format,
// texts that read as dates are formatted as dates first.
std::optional<Operand> operandOf(const QVariant& value, const FormatLocale& locale,
                                 bool datesWanted)
{
    std::optional<FormatDecimal::Signed> number = numberOf(value);
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString();
        if (datesWanted) {
            if (const std::optional<DateTimeValue> dateTime = parseDateTime(text))
                return Operand::fromDateTime(*dateTime);
        }
        number = FormatDecimal::parse(text, locale.decimalSeparator, locale.thousandsSeparator);
    } else if (const std::optional<DateTimeValue> dateTime = dateTimeOf(value)) {
        return Operand::fromDateTime(*dateTime);
    }
    if (!number)
        return std::nullopt;
    Operand operand;
    operand.magnitude = number->magnitude;
    operand.negative = number->negative;
    return operand;
}

QString applySection(const FormatSection& section, const Operand& operand, bool minus,
                     const QVariant& value, const FormatLocale& locale)
{
    FormatOutput out;
    switch (section.kind) {
    case SectionKind::Number:
        if (minus)
            out += u'-';
        appendNumber(out, section, operand.number(), locale);
        break;
    case SectionKind::DateTime:
        if (const std::optional<DateTimeValue> dateTime = operand.date())
            appendDateTime(out, section, *dateTime, locale);
        else
            return valueText(value, locale);
        break;
    case SectionKind::Text:
        appendText(out, section, valueText(value, locale));
        break;
    case SectionKind::Literal:
        if (minus)
            out += u'-';
        for (const FormatToken& token : section.tokens)
            out += section.literal(token);
        break;
    case SectionKind::Empty:
        return valueText(value, locale);
    }
    return out.toString();
}

QString applyProgram(const FormatProgram& program, const QVariant& value,
                     const FormatLocale& locale)
{
    if (program.localePattern) {
        const FormatProgram& pattern = (locale.*program.localePattern).program();
        // A locale pattern that names a locale pattern again would never end.
        if (pattern.localePattern)
            return valueText(value, locale);
        return applyProgram(pattern, value, locale);
    }
    if (program.generalNumber) {
        const std::optional<Operand> operand = operandOf(value, locale, false);
        if (!operand)
            return valueText(value, locale);
        FormatOutput out;
        if (operand->negative)
            out += u'-';
        appendPlainNumber(out, operand->number(), true, locale);
        return out.toString();
    }
    const std::vector<FormatSection>& sections = program.sections;
    if (sections.empty())
        return valueText(value, locale);
    // A section left empty ("0;;\Z\e\r\o") or missing is as good as none.
    const auto sectionAt = [&](size_t index) -> const FormatSection* {
        return index < sections.size() && sections[index].kind != SectionKind::Empty
                   ? &sections[index]
                   : nullptr;
    };

    // Text formats have a second section for empty values and empty texts; the others a
    // fourth for empty values, which shows as if the value were zero.
    if (value.isNull()) {
        const FormatSection* section = sectionAt(program.isTextFormat() ? 1 : 3);
        return section ? applySection(*section, Operand(), false, value, locale) : QString();
    }
    if (program.isTextFormat()) {
        const QString text = valueText(value, locale);
        const FormatSection* emptyText = text.isEmpty() ? sectionAt(1) : nullptr;
        FormatOutput out;
        appendText(out, emptyText ? *emptyText : sections.front(), text);
        return out.toString();
    }

    const std::optional<Operand> operand = operandOf(value, locale, program.hasDateTimeSection());
    if (!operand)
        return valueText(value, locale);
    // Positive; negative, or the first with a minus sign before it; zero, or the first. The
    // sign is the value's before rounding: -0.001 shows as "-0.00".
    const FormatSection* section = &sections.front();
    bool minus = false;
    if (operand->negative) {
        if (const FormatSection* negative = sectionAt(1))
            section = negative;
        else
            minus = true;
    } else if (operand->isZero()) {
        if (const FormatSection* zero = sectionAt(2))
            section = zero;
    }
    return applySection(*section, *operand, minus, value, locale);
}

} // namespace

DisplayFormat::DisplayFormat() : m_program(compileFormat(QString())) {}

DisplayFormat::DisplayFormat(const QString& format) : m_program(compileFormat(format)) {}

const QString& DisplayFormat::source() const
{
    return m_program->source;
}

QString DisplayFormat::apply(const QVariant& value, const FormatLocale& locale) const
{
    return applyProgram(*m_program, value, locale);
}

QString formatValue(const QVariant& value, const QString& format, const FormatLocale& locale)
{
    return applyProgram(*compileFormat(format), value, locale);
}

QString valueText(const QVariant& value, const FormatLocale& locale)
{
    if (value.isNull())
        return QString();
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        if (std::isnan(number))
            return QStringLiteral("NaN");
        if (std::isinf(number))
            return number < 0 ? QStringLiteral("-Infinity") : QStringLiteral("Infinity");
        // Singles show the digits they hold; doubles the fewest that read back the same.
        const int digits = value.typeId() == QMetaType::Float ? kSingleDigits : 0;
        FormatOutput out;
        if (number < 0)
            out += u'-';
        appendPlainNumber(out, FormatDecimal::fromDouble(std::abs(number), digits), true, locale);
        return out.toString();
    }
    default:
        break;
    }
    if (value.metaType() == QMetaType::fromType<Currency>()) {
        QString text = value.value<Currency>().toString();
        return text.replace(u'.', locale.decimalSeparator);
    }
    if (const std::optional<DateTimeValue> dateTime = dateTimeOf(value)) {
        FormatOutput out;
        appendGeneralDate(out, *dateTime, locale);
        return out.toString();
    }
    return value.toString();
}

} // namespace tabulor
