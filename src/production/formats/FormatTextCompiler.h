#pragma once

#include "production/formats/FormatChars.h"
#include "production/formats/FormatProgram.h"

namespace tabulor {

// Compiles a text section: "@" and "&" placeholders, "<" and ">" (lower and upper case) and
// "!" (fill from the left). Without placeholders the whole text shows where the first of
// those codes stands.
void compileTextSection(const FormatChars& chars, FormatSection& section);

} // namespace tabulor
