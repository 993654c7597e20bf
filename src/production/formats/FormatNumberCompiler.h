#pragma once

#include "production/formats/FormatChars.h"
#include "production/formats/FormatProgram.h"

namespace tabulor {

// Compiles a number section ("#,##0.00", "0.0E+00", "0%", "#,##0,"): digit placeholders
// before and after the point, scientific notation, grouping, scaling by thousands and
// percent, and the literals between them.
void compileNumberSection(const FormatChars& chars, FormatSection& section);

} // namespace tabulor
