#include "production/pages/MissingGlyphs.h"

#include <QFontDatabase>
#include <QFontMetrics>

namespace tabulor {

namespace {

// Latin letters and their accented forms are in every face this system installs; a report of
// them, the common case by far, costs no more than a comparison a character.
constexpr char32_t kFirstCharacterToCheck = 0x0250;

} // namespace

bool MissingGlyphs::anyFontHas(char32_t character)
{
    const auto known = m_drawable.constFind(character);
    if (known != m_drawable.cend())
        return *known;
    if (m_families.isEmpty())
        m_families = QFontDatabase::families();
    bool drawable = false;
    for (const QString& family : std::as_const(m_families)) {
        if (QFontMetrics(QFont(family)).inFontUcs4(character)) {
            drawable = true;
            break;
        }
    }
    m_drawable.insert(character, drawable);
    return drawable;
}

QStringList MissingGlyphs::newlyMissing(QStringView text)
{
    QStringList messages;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (c < kFirstCharacterToCheck)
            continue;
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        if (QChar::isSurrogate(c) || QChar::isSpace(c) || QChar::category(c) == QChar::Other_Format)
            continue;
        const QChar::Script script = QChar::script(c);
        if (m_told.contains(script) || anyFontHas(c))
            continue;
        m_told.insert(script);
        messages.append(QStringLiteral("no installed font has U+%1 '%2'; it and any other such "
                                       "character of its script are drawn as empty boxes")
                            .arg(static_cast<uint>(c), 4, 16, QChar(u'0'))
                            .arg(QString::fromUcs4(&c, 1)));
    }
    return messages;
}

} // namespace tabulor
