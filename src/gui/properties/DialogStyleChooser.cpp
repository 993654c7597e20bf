#include "gui/properties/DialogStyleChooser.h"

#include "gui/properties/FontColourDialog.h"
#include "production/pages/FontCatalog.h"

#include <QColorDialog>

namespace tabulor {

namespace {

// A colour as the definition stores it: 0x00BBGGRR.
qint32 colourValue(const QColor& colour)
{
    return qint32(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
}

} // namespace

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
    FontColourDialog dialog(current, FontCatalog::colour(style.Text), m_parent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QFont chosen = dialog.font();
    ReportStyle result = style;
    result.FontName = chosen.family();
    result.FontSize = float(chosen.pointSizeF());
    result.FontBold = chosen.bold();
    result.FontItalic = chosen.italic();
    result.FontStrikeThru = chosen.strikeOut();
    result.FontUnderline = chosen.underline();
    result.Text = colourValue(dialog.colour());
    return result;
}

std::optional<qint32> DialogStyleChooser::chooseColour(qint32 colour)
{
    const QColor chosen = QColorDialog::getColor(FontCatalog::colour(colour), m_parent);
    if (!chosen.isValid())
        return std::nullopt;
    return colourValue(chosen);
}

} // namespace tabulor
