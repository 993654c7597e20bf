#pragma once

#include <QChar>
#include <QStringView>

#include <vector>

namespace tabulor {

// One character of a section of a display format; quoted and escaped characters are always
// literal.
struct FormatChar
{
    QChar c;
    bool quoted = false;
};
using FormatChars = std::vector<FormatChar>;

// Splits a format at the semicolons outside quotes and resolves quotes ("...") and escapes
// (\c). Sections after the fourth are ignored.
std::vector<FormatChars> splitFormatSections(QStringView format);

// Whether the character at i is c and not quoted; false past the end.
bool isUnquoted(const FormatChars& chars, size_t i, char16_t c);

} // namespace tabulor
