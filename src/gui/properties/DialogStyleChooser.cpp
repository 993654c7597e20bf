#include "gui/properties/DialogStyleChooser.h"

#include "production/pages/FontCatalog.h"

#include <QColorDialog>
#include <QFontDialog>

namespace tabulor {

DialogStyleChooser::DialogStyleChooser(QWidget* parent) : m_parent(parent) {}

std::optional<ReportStyle> DialogStyleChooser::chooseFont(const ReportStyle& style)
{
    QFont current(style.FontName);
    if (style.FontSize > 0)
        current.setPointSizeF(style.FontSize);
    current.setBold(style.FontBold);
    current.setItalic(style.FontItalic);
    current.setStrikeOut(style.FontStrikeThru);
    current.setUnderline(style.FontUnderline);
    bool accepted = false;
    const QFont chosen = QFontDialog::getFont(&accepted, current, m_parent);
    if (!accepted)
        return std::nullopt;
    ReportStyle result = style;
    result.FontName = chosen.family();
    result.FontSize = float(chosen.pointSizeF());
    result.FontBold = chosen.bold();
    result.FontItalic = chosen.italic();
    result.FontStrikeThru = chosen.strikeOut();
    result.FontUnderline = chosen.underline();
    return result;
}

std::optional<qint32> DialogStyleChooser::chooseColour(qint32 colour)
{
    const QColor chosen = QColorDialog::getColor(FontCatalog::colour(colour), m_parent);
    if (!chosen.isValid())
        return std::nullopt;
    return qint32(chosen.red() | (chosen.green() << 8) | (chosen.blue() << 16));
}

} // namespace tabulor
