#include "production/pages/FontCatalog.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontInfo>

namespace tabulor {

namespace {

// Where Debian's Windows-compatibility fonts live, outside the font search path.
const char* const kCompatibilityFonts[] = {"/usr/share/wine/fonts/tahoma.ttf",
                                           "/usr/share/wine/fonts/tahomabd.ttf"};

void registerCompatibilityFonts()
{
    static const bool registered = [] {
        for (const char* path : kCompatibilityFonts) {
            if (QFile::exists(QString::fromLatin1(path)))
                QFontDatabase::addApplicationFont(QString::fromLatin1(path));
        }
        return true;
    }();
    Q_UNUSED(registered);
}

} // namespace

FontCatalog::FontCatalog()
{
    registerCompatibilityFonts();
}

QString FontCatalog::family(const QString& requested) const
{
    const auto known = m_families.constFind(requested);
    if (known != m_families.cend())
        return *known;
    QString used = requested;
    if (!QFontDatabase::hasFamily(requested)) {
        QFont probe(requested);
        used = QFontInfo(probe).family();
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

QStringList FontCatalog::substitutions() const
{
    QStringList list;
    for (auto it = m_families.cbegin(); it != m_families.cend(); ++it) {
        if (it.key() != it.value())
            list.append(QStringLiteral("%1 (replaced by %2)").arg(it.key(), it.value()));
    }
    list.sort();
    return list;
}

} // namespace tabulor
