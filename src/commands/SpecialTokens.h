#pragma once

#include <QString>

namespace tabulor {

// The entries of the properties dialog's menu of special texts for titles, headers and
// footers, numbered from 0; 3, 7 and 11 are separators.
inline constexpr int kSpecialTokenEntries = 15;

bool isSpecialTokenSeparator(int entry);

// The text that menu entry inserts: "%" for the page number, "<n>" for the page count, "<line>",
// "<db>", "<rs>", "<rf>", then the dates "<d>", "<dd>", "<ddd>" and times "<t>", "<tt>",
// "<ttt>". Separators and entries out of range insert nothing.
QString specialTokenText(int entry);

} // namespace tabulor
