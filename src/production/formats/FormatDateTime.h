#pragma once

#include "production/formats/FormatLocale.h"
#include "production/formats/FormatOutput.h"
#include "production/formats/FormatProgram.h"

#include <QDate>
#include <QTime>
#include <QVariant>

#include <optional>

namespace tabulor {

// A date and time as display formats show it. "c" and "General Date" show only the parts
// that the value has: a date value has no time, a time value no date.
struct DateTimeValue
{
    QDate date;
    QTime time; // whole seconds
    bool hasDate = true;
    bool hasTime = false;
};

// The classic serial numbers: whole days since 30 December 1899, and the time as a fraction
// of a day (-1.25 is 29 December 1899, 06:00). Nothing outside the years 100 to 9999.
std::optional<DateTimeValue> dateTimeFromSerial(double serial);
double serialOf(const DateTimeValue& value);

// QDate, QDateTime and QTime values; nothing for anything else.
std::optional<DateTimeValue> dateTimeOf(const QVariant& value);
// A date, a date and time or a time written in ISO 8601, as databases store them as text.
std::optional<DateTimeValue> parseDateTime(QStringView text);

// Appends `value` laid out by a date and time section.
void appendDateTime(FormatOutput& out, const FormatSection& section, const DateTimeValue& value,
                    const FormatLocale& locale);
// The locale's short date and long time, each where the value has it.
void appendGeneralDate(FormatOutput& out, const DateTimeValue& value, const FormatLocale& locale);

} // namespace tabulor
