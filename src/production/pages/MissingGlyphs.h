#pragma once

#include "production/base/Export.h"

#include <QChar>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QStringView>

namespace tabulor {

// Finds the characters of a text that no installed font can draw, so that the user can be
// told once per script instead of finding empty boxes on the pages. Whether a character can
// be drawn is asked of the installed faces once per character and remembered.
class TABULOR_EXPORT MissingGlyphs
{
public:
    // For each script of text that has a character no installed font has, and that has not
    // been told before, a message naming the first such character.
    QStringList newlyMissing(QStringView text);

private:
    bool anyFontHas(char32_t character);

    QHash<char32_t, bool> m_drawable;
    QSet<QChar::Script> m_told;
    QStringList m_families; // the installed faces, looked up when first needed
};

} // namespace tabulor
