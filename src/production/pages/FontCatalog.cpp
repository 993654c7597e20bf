#include "production/pages/FontCatalog.h"

#include "production/fonts/FontMatcher.h"

#include <QFontDatabase>
#include <QMutex>
#include <QSet>

#include <utility>

namespace tabulor {

namespace {

// Makes a font file that only our own font configuration searches known to Qt as well, once
// per process.
void registerWithQt(const QByteArray& path)
{
    static QMutex mutex;
    static QSet<QByteArray> registered;
    const QMutexLocker lock(&mutex);
    if (!registered.contains(path)) {
        registered.insert(path);
        QFontDatabase::addApplicationFont(QString::fromLocal8Bit(path));
    }
}

} // namespace

FontCatalog::FontCatalog() = default;

QString FontCatalog::family(const QString& requested) const
{
    const QMutexLocker lock(&m_mutex);
    const auto known = m_families.constFind(requested);
    if (known != m_families.cend())
        return *known;
    // The face the PDF writer embeds for this family is the one the layout measures.
    QString used = requested;
    const FontMatcher matcher;
    if (const std::optional<FontMatch> match = matcher.match(requested, false, false)) {
        if (match->privateFile) {
            // Qt learns the family's bold and italic faces too, which it would otherwise fake.
            for (const auto& [bold, italic] : {std::pair{false, false}, std::pair{true, false},
                                               std::pair{false, true}, std::pair{true, true}}) {
                const std::optional<FontMatch> face = matcher.match(requested, bold, italic);
                if (face && face->privateFile)
                    registerWithQt(face->file.path);
            }
        }
        if (!match->family.isEmpty())
            used = match->family;
    }
    m_families.insert(requested, used);
    return used;
}

FontSpec FontCatalog::fontSpec(const ReportStyle& style)
{
    return FontSpec{style.FontName,      style.FontSize > 0 ? style.FontSize : 8.25,
                    style.FontBold,      style.FontItalic,
                    style.FontUnderline, style.FontStrikeThru};
}

QFont FontCatalog::font(const FontSpec& fontSpec) const
{
    QFont font(family(fontSpec.family));
    font.setPointSizeF(fontSpec.pointSize > 0 ? fontSpec.pointSize : 8.25);
    font.setBold(fontSpec.bold);
    font.setItalic(fontSpec.italic);
    font.setUnderline(fontSpec.underline);
    font.setStrikeOut(fontSpec.strikeOut);
    return font;
}

bool FontCatalog::thickened(const FontSpec& fontSpec) const
{
    if (!fontSpec.bold)
        return false;
    const QMutexLocker lock(&m_mutex);
    const QString key = fontSpec.family + (fontSpec.italic ? u'/' : u'|');
    const auto known = m_thickened.constFind(key);
    if (known != m_thickened.cend())
        return *known;
    const std::optional<FontMatch> match =
        FontMatcher().match(fontSpec.family, true, fontSpec.italic);
    const bool thick = match && match->syntheticBold;
    m_thickened.insert(key, thick);
    return thick;
}

QStringList FontCatalog::substitutions() const
{
    const QMutexLocker lock(&m_mutex);
    QStringList list;
    for (auto it = m_families.cbegin(); it != m_families.cend(); ++it) {
        if (it.key().compare(it.value(), Qt::CaseInsensitive) != 0)
            list.append(QStringLiteral("%1 (replaced by %2)").arg(it.key(), it.value()));
    }
    list.sort();
    return list;
}

} // namespace tabulor
