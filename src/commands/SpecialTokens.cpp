#include "commands/SpecialTokens.h"

#include <array>

namespace tabulor {

namespace {

// The page number is a bare "%": the page document shows it, where "<p>" in a stored header
// is replaced when the header is drawn.
constexpr std::array<const char*, kSpecialTokenEntries> kTokens{
    "%",   "<n>",  "<line>", "", "<db>", "<rs>", "<rf>", "",
    "<d>", "<dd>", "<ddd>",  "", "<t>",  "<tt>", "<ttt>"};

} // namespace

bool isSpecialTokenSeparator(int entry)
{
    return entry == 3 || entry == 7 || entry == 11;
}

QString specialTokenText(int entry)
{
    if (entry < 0 || entry >= kSpecialTokenEntries)
        return {};
    return QString::fromLatin1(kTokens[std::size_t(entry)]);
}

} // namespace tabulor
