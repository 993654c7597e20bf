#pragma once

#include "production/pages/RichText.h"

#include <QString>
#include <QStringView>

namespace tabulor {

// Where the text first stops being well-formed rich text, and what is wrong there.
struct RtfProblem
{
    qsizetype offset = 0; // in UTF-16 code units from the start of the text
    QString message;

    bool operator==(const RtfProblem&) const = default;
};

// Reads a title written in the rich-text format (RTF) into rich text.
//
// Reading never fails: damaged or unusual input gives the text that can be read from it, and
// problem, when given, receives the first problem found (its message empty when there is none).
// Characters outside ASCII in the text are taken as they stand, because the title was already
// decoded when the definition was read; bytes written as \'hh escapes are decoded in the code
// page of their font's character set, or of the document.
//
// Read: groups, \b \i \ul \strike and their variants, \plain, \f with the font table, \fs,
// \cf with the colour table, \v hidden text, \pard \ql \qc \qr \qj, \par \line \tab and the
// named special characters, \u with \uc fallbacks, \ansicpg and \fcharset. Destinations that
// do not show text (style sheets, document information, pictures, headers and footers, groups
// marked \*) and control words not listed are skipped. Groups nested deeper than a fixed limit
// are skipped as a whole, and numbers are clamped, so that any input is read in linear time
// and bounded memory.
RichText readRtf(QStringView rtf, RtfProblem* problem = nullptr);

} // namespace tabulor
