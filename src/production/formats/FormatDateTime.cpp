#include "production/formats/FormatDateTime.h"

#include "production/formats/FormatNumber.h"

#include <QDateTime>

#include <cmath>

namespace tabulor {

namespace {

const QDate kSerialEpoch(1899, 12, 30);
constexpr int kSecondsPerDay = 24 * 60 * 60;
constexpr double kFirstSerial = -657434; // 1 January 100
constexpr double kLastSerial = 2958466;  // just after 31 December 9999

QTime wholeSeconds(QTime time)
{
    return QTime(time.hour(), time.minute(), time.second());
}

void appendTokens(FormatOutput& out, const FormatSection& section, const DateTimeValue& value,
                  const FormatLocale& locale, bool withinLocalePattern);

// The locale's own patterns are themselves formats. Codes inside them that would expand to a
// locale pattern again show nothing, so that no pattern can expand itself.
void appendLocalePattern(FormatOutput& out, const FormatPattern& pattern,
                         const DateTimeValue& value, const FormatLocale& locale,
                         bool withinLocalePattern)
{
    if (withinLocalePattern)
        return;
    const FormatProgram& program = pattern.program();
    if (!program.sections.empty())
        appendTokens(out, program.sections.front(), value, locale, true);
}

void appendGeneral(FormatOutput& out, const DateTimeValue& value, const FormatLocale& locale,
                   bool withinLocalePattern)
{
    if (value.hasDate)
        appendLocalePattern(out, locale.shortDate, value, locale, withinLocalePattern);
    if (value.hasTime) {
        if (value.hasDate)
            out += u' ';
        appendLocalePattern(out, locale.longTime, value, locale, withinLocalePattern);
    }
}

void appendAmPm(FormatOutput& out, AmPmStyle style, bool morning, const FormatLocale& locale)
{
    switch (style) {
    case AmPmStyle::Upper:
        out += morning ? QStringView(u"AM") : QStringView(u"PM");
        break;
    case AmPmStyle::Lower:
        out += morning ? QStringView(u"am") : QStringView(u"pm");
        break;
    case AmPmStyle::UpperChar:
        out += morning ? u'A' : u'P';
        break;
    case AmPmStyle::LowerChar:
        out += morning ? u'a' : u'p';
        break;
    case AmPmStyle::Locale:
        out += morning ? locale.amDesignator : locale.pmDesignator;
        break;
    }
}

// Weeks start on Sunday and week 1 is the one that holds 1 January, so a year has 53 weeks,
// or 54 when a leap year starts on a Saturday.
int weekOfYear(QDate date)
{
    const int firstWeekday = QDate(date.year(), 1, 1).dayOfWeek() % 7; // Sunday = 0
    return (date.dayOfYear() - 1 + firstWeekday) / 7 + 1;
}

void appendTokens(FormatOutput& out, const FormatSection& section, const DateTimeValue& value,
                  const FormatLocale& locale, bool withinLocalePattern)
{
    const QDate date = value.date;
    const QTime time = value.time;
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day); // one calendar conversion for all three
    const auto hour = [&] {
        if (!section.twelveHour)
            return time.hour();
        const int hour = time.hour() % 12;
        return hour == 0 ? 12 : hour;
    };
    for (const FormatToken& token : section.tokens) {
        switch (token.op) {
        case FormatOp::Literal:
            out += section.literal(token);
            break;
        case FormatOp::Day:
        case FormatOp::DayPadded:
            appendPadded(out, day, token.op == FormatOp::DayPadded ? 2 : 1);
            break;
        case FormatOp::DayShortName:
            out += locale.shortDayNames[date.dayOfWeek() - 1];
            break;
        case FormatOp::DayLongName:
            out += locale.longDayNames[date.dayOfWeek() - 1];
            break;
        case FormatOp::ShortDate:
            appendLocalePattern(out, locale.shortDate, value, locale, withinLocalePattern);
            break;
        case FormatOp::LongDate:
            appendLocalePattern(out, locale.longDate, value, locale, withinLocalePattern);
            break;
        case FormatOp::Weekday:
            appendPadded(out, date.dayOfWeek() % 7 + 1, 1);
            break;
        case FormatOp::WeekOfYear:
            appendPadded(out, weekOfYear(date), 1);
            break;
        case FormatOp::Month:
        case FormatOp::MonthPadded:
            appendPadded(out, month, token.op == FormatOp::MonthPadded ? 2 : 1);
            break;
        case FormatOp::MonthShortName:
            out += locale.shortMonthNames[month - 1];
            break;
        case FormatOp::MonthLongName:
            out += locale.longMonthNames[month - 1];
            break;
        case FormatOp::Quarter:
            appendPadded(out, (month - 1) / 3 + 1, 1);
            break;
        case FormatOp::DayOfYear:
            appendPadded(out, date.dayOfYear(), 1);
            break;
        case FormatOp::YearShort:
            appendPadded(out, std::abs(year) % 100, 2);
            break;
        case FormatOp::YearLong:
            appendPadded(out, std::abs(year), 4);
            break;
        case FormatOp::Hour:
        case FormatOp::HourPadded:
            appendPadded(out, hour(), token.op == FormatOp::HourPadded ? 2 : 1);
            break;
        case FormatOp::Minute:
        case FormatOp::MinutePadded:
            appendPadded(out, time.minute(), token.op == FormatOp::MinutePadded ? 2 : 1);
            break;
        case FormatOp::Second:
        case FormatOp::SecondPadded:
            appendPadded(out, time.second(), token.op == FormatOp::SecondPadded ? 2 : 1);
            break;
        case FormatOp::LongTime:
            appendLocalePattern(out, locale.longTime, value, locale, withinLocalePattern);
            break;
        case FormatOp::GeneralDate:
            appendGeneral(out, value, locale, withinLocalePattern);
            break;
        case FormatOp::AmPm:
            appendAmPm(out, AmPmStyle(token.a), time.hour() < 12, locale);
            break;
        case FormatOp::DateSeparator:
            out += locale.dateSeparator;
            break;
        case FormatOp::TimeSeparator:
            out += locale.timeSeparator;
            break;
        default:
            break;
        }
    }
}

} // namespace

std::optional<DateTimeValue> dateTimeFromSerial(double serial)
{
    if (!(serial >= kFirstSerial && serial < kLastSerial))
        return std::nullopt;
    double wholeDays = std::trunc(serial);
    qint64 seconds = std::llround(std::abs(serial - wholeDays) * kSecondsPerDay);
    if (seconds == kSecondsPerDay) { // a fraction that rounds up to the next midnight
        seconds = 0;
        wholeDays += serial < 0 ? -1 : 1;
    }
    DateTimeValue value;
    value.date = kSerialEpoch.addDays(static_cast<qint64>(wholeDays));
    value.time = QTime(0, 0).addSecs(static_cast<int>(seconds));
    value.hasDate = wholeDays != 0;
    value.hasTime = seconds != 0 || wholeDays == 0;
    return value;
}

double serialOf(const DateTimeValue& value)
{
    const double days = static_cast<double>(kSerialEpoch.daysTo(value.date));
    const double fraction = QTime(0, 0).secsTo(value.time) / double(kSecondsPerDay);
    return days < 0 ? days - fraction : days + fraction;
}

std::optional<DateTimeValue> dateTimeOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QDate: {
        const QDate date = value.toDate();
        if (!date.isValid())
            return std::nullopt;
        return DateTimeValue{date, QTime(0, 0), true, false};
    }
    case QMetaType::QDateTime: {
        const QDateTime dateTime = value.toDateTime();
        if (!dateTime.isValid())
            return std::nullopt;
        const QTime time = wholeSeconds(dateTime.time());
        return DateTimeValue{dateTime.date(), time, true, time != QTime(0, 0)};
    }
    case QMetaType::QTime: {
        const QTime time = value.toTime();
        if (!time.isValid())
            return std::nullopt;
        return DateTimeValue{kSerialEpoch, wholeSeconds(time), false, true};
    }
    default:
        return std::nullopt;
    }
}

std::optional<DateTimeValue> parseDateTime(QStringView text)
{
    text = text.trimmed();
    if (const QDateTime dateTime = QDateTime::fromString(text, Qt::ISODate); dateTime.isValid())
        return dateTimeOf(dateTime);
    if (const QTime time = QTime::fromString(text, Qt::ISODate); time.isValid())
        return dateTimeOf(time);
    return std::nullopt;
}

void appendDateTime(FormatOutput& out, const FormatSection& section, const DateTimeValue& value,
                    const FormatLocale& locale)
{
    appendTokens(out, section, value, locale, false);
}

void appendGeneralDate(FormatOutput& out, const DateTimeValue& value, const FormatLocale& locale)
{
    appendGeneral(out, value, locale, false);
}

} // namespace tabulor
