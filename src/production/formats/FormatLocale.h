#pragma once

#include "production/formats/FormatPattern.h"

#include <QString>

#include <array>

class QLocale;

namespace tabulor {

// The regional settings that display formats read: separators, names and the patterns behind
// the named date, time and currency formats. Patterns are written in the display-format
// language itself ("m/d/yyyy", "h:nn:ss AMPM") and kept compiled.
struct FormatLocale
{
    QString decimalSeparator;
    QString thousandsSeparator;
    QString dateSeparator; // what "/" shows in a date format
    QString timeSeparator; // what ":" shows in a date format

    // Monday first, as QDate::dayOfWeek counts.
    std::array<QString, 7> longDayNames;
    std::array<QString, 7> shortDayNames;
    std::array<QString, 12> longMonthNames;
    std::array<QString, 12> shortMonthNames;

    QString amDesignator; // shown by "AMPM"
    QString pmDesignator;

    FormatPattern shortDate; // "Short Date", "ddddd" and the date part of "c"
    FormatPattern mediumDate;
    FormatPattern longDate; // "Long Date", "dddddd"
    FormatPattern shortTime;
    FormatPattern mediumTime;
    FormatPattern longTime; // "Long Time", "ttttt" and the time part of "c"
    FormatPattern currency; // the "Currency" format, sections for positive and negative amounts

    // Separators, names, the short and long date, the long time and the currency layout come
    // from the locale. Years in the locale's dates are widened to four digits, so that no date
    // in a report is ambiguous. Medium dates ("dd-mmm-yy"), medium times ("hh:nn AM/PM") and
    // short times ("hh:nn", a 24-hour clock) keep their fixed classic layouts, with the
    // locale's names and separators.
    static FormatLocale fromQLocale(const QLocale& locale);
};

} // namespace tabulor
