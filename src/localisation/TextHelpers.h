#pragma once

#include <QString>
#include <QStringList>

#include <string_view>

namespace tabulor {

// Removes spaces, and only spaces, from both ends of text.
QString TrimSpaces(QStringView text);

// Removes spaces and tabs from both ends of text; blanks inside it are kept. Other white space
// (a non-breaking space, for instance) counts as text.
QString TrimBlanks(QStringView text);

// Splits text at every "|" into entries, empty ones included, and replaces list with them when
// there are exactly expectedCount of them. Otherwise list is left as it was. Returns whether
// the list was replaced.
bool FillListFromText(QStringList& list, const QString& text, int expectedCount);

// The built-in key names and texts are plain ASCII literals.
inline QString fromAscii(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace tabulor
