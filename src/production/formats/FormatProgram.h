#pragma once

#include "production/formats/FormatLocale.h"

#include <QString>
#include <QStringView>

#include <memory>
#include <vector>

namespace tabulor {

// What one section of a display format does with its value.
enum class SectionKind : quint8
{
    Empty,    // nothing between the semicolons: the first section stands in
    Literal,  // fixed text only
    Number,   // digit placeholders
    DateTime, // date and time codes
    Text,     // character placeholders and case changes
};

enum class FormatOp : quint8
{
    Literal, // the section's literals from `a`, `b` characters

    IntegerDigit,  // the digit for 10^a; b = 1 on the leftmost, which also shows all higher ones
    DecimalPoint,  // the locale's decimal separator
    FractionDigit, // the a-th digit after the point, from 0
    Exponent,      // a = least digits; b = ExponentFlags

    Day,
    DayPadded,
    DayShortName,
    DayLongName,
    ShortDate,
    LongDate,
    Weekday,    // 1 = Sunday
    WeekOfYear, // weeks start on Sunday, week 1 holds 1 January
    Month,
    MonthPadded,
    MonthShortName,
    MonthLongName,
    Quarter,
    DayOfYear,
    YearShort,
    YearLong,
    Hour,
    HourPadded,
    Minute,
    MinutePadded,
    Second,
    SecondPadded,
    LongTime,
    GeneralDate, // the date if there is one, the time if there is one
    AmPm,        // a = AmPmStyle
    DateSeparator,
    TimeSeparator,

    CharRequired, // "@": a character or a space
    CharOptional, // "&": a character or nothing
    WholeText,    // a text section without placeholders shows the whole text here
};

enum ExponentFlags : qint32
{
    ExponentUpper = 1, // "E" rather than "e"
    ExponentPlus = 2,  // a "+" on positive exponents too
};

enum class AmPmStyle : qint32
{
    Upper,     // "AM/PM"
    Lower,     // "am/pm"
    UpperChar, // "A/P"
    LowerChar, // "a/p"
    Locale,    // "AMPM": the locale's designators
};

struct FormatToken
{
    FormatOp op;
    qint32 a = 0;
    qint32 b = 0;
};

enum class CaseChange : quint8
{
    None,
    Lower,
    Upper
};

// One section of a compiled format: a small program of tokens, with what its kind needs to
// run them.
struct FormatSection
{
    SectionKind kind = SectionKind::Empty;
    std::vector<FormatToken> tokens;
    QString literals;

    // Number sections
    int fractionPlaceholders = 0;
    int minIntegerDigits = 0;  // up to and including the leftmost "0"
    int minFractionDigits = 0; // up to and including the rightmost "0"
    int mantissaDigits = 0;    // digits before the point in scientific notation
    int powerShift = 0;        // +2 for each "%", -3 for each scaling ","
    bool grouping = false;
    bool scientific = false;

    // Date and time sections
    bool twelveHour = false;

    // Text sections
    bool leftToRight = false;
    CaseChange caseChange = CaseChange::None;

    QStringView literal(const FormatToken& token) const
    {
        return QStringView(literals).sliced(token.a, token.b);
    }

    // Appends a token, as the section's compiler reads its characters.
    void addOp(FormatOp op, qint32 a = 0, qint32 b = 0);
    // Appends a literal character, to the literal token before it when there is one.
    void addLiteral(QChar c);
};

// A display format, compiled once. Named formats that the locale defines are resolved when
// the format is applied; all others become up to four sections (positive; negative; zero;
// empty), or for a text format two (text; empty).
struct FormatProgram
{
    QString source;
    std::vector<FormatSection> sections;
    FormatPattern FormatLocale::*localePattern = nullptr;
    bool generalNumber = false;

    bool isTextFormat() const
    {
        return !sections.empty() && sections.front().kind == SectionKind::Text;
    }
    bool hasDateTimeSection() const;
};

std::shared_ptr<const FormatProgram> compileFormat(const QString& format);

} // namespace tabulor
