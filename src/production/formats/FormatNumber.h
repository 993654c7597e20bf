#pragma once

#include "production/formats/FormatDecimal.h"
#include "production/formats/FormatLocale.h"
#include "production/formats/FormatOutput.h"
#include "production/formats/FormatProgram.h"

namespace tabulor {

// Appends `magnitude` laid out by a number section: scaled, rounded, grouped, with its
// literals. The caller writes any minus sign.
void appendNumber(FormatOutput& out, const FormatSection& section, FormatDecimal magnitude,
                  const FormatLocale& locale);

// Appends `magnitude` with every significant digit and no grouping; with `allowScientific`,
// numbers of 10^15 and above or below 10^-4 are written as "1.5E+20".
void appendPlainNumber(FormatOutput& out, const FormatDecimal& magnitude, bool allowScientific,
                       const FormatLocale& locale);

// Appends `value` (not negative) in decimal digits, with leading zeros up to `width` digits.
void appendPadded(FormatOutput& out, qint64 value, int width);

} // namespace tabulor
