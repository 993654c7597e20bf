#pragma once

#include "production/formats/FormatOutput.h"
#include "production/formats/FormatProgram.h"

namespace tabulor {

// Appends `text` laid out by a text section: "@" shows a character or a space, "&" a character
// or nothing. Placeholders take the text's characters from the right ("!": from the left); the
// outermost placeholder takes whatever the others leave, so that no character is lost.
void appendText(FormatOutput& out, const FormatSection& section, QStringView text);

} // namespace tabulor
