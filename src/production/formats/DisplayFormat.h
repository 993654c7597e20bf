#pragma once

#include "production/formats/FormatLocale.h"

#include <QString>
#include <QVariant>

#include <memory>

namespace tabulor {

struct FormatProgram;

// The display format of a report field, in the classic format-string language: named formats
// ("Standard", "Short Date", "Yes/No"), number formats ("#,##0.00;(#,##0.00);\Z\e\r\o"), date
// and time formats ("dd-mmm-yyyy hh:nn") and text formats ("@@@-@@@@", ">").
//
// Compiling is done once, in the constructor; apply() only runs the compiled program, so a
// column keeps one DisplayFormat for all its cells. A format that cannot apply to a value (a
// date format on a text that is no date, a number format on a text that is no number) shows
// the value's own text.
class DisplayFormat
{
public:
    DisplayFormat(); // the empty format: every value shows its own text
    explicit DisplayFormat(const QString& format);

    const QString& source() const;
    QString apply(const QVariant& value, const FormatLocale& locale) const;

private:
    std::shared_ptr<const FormatProgram> m_program;
};

// Formats one value, compiling the format for it: a caller that formats many values with one
// format keeps a DisplayFormat instead.
QString formatValue(const QVariant& value, const QString& format, const FormatLocale& locale);

// A value's own text, what the empty format shows: integers plainly, doubles in the fewest
// digits that read back as the same number, currency as its exact amount, booleans as "True"
// and "False", dates as the locale's short date with the long time when there is one, and an
// empty (null) value as nothing.
QString valueText(const QVariant& value, const FormatLocale& locale);

} // namespace tabulor
