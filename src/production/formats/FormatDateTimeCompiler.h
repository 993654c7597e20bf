#pragma once

#include "production/formats/FormatChars.h"
#include "production/formats/FormatProgram.h"

namespace tabulor {

// Compiles the date and time codes of a section (d dd ddd dddd ddddd dddddd, w ww, m mm mmm
// mmmm, q, y yy yyyy, h hh, n nn, s ss, c, ttttt, AM/PM am/pm A/P a/p AMPM, / and :), with "m"
// and "mm" read as minutes after an hour or before a second; false when the section has none,
// so that it is fixed text.
bool compileDateTimeSection(const FormatChars& chars, FormatSection& section);

} // namespace tabulor
