#include "production/pages/PagePainter.h"

#include "production/pages/ThickenedText.h"

#include <QPen>

#include <cmath>

namespace tabulor {

namespace {

// A font whose size is given in the painter's units, twips: a point is 20 of them.
QFont twipFont(const FontCatalog& fonts, const FontSpec& fontSpec)
{
    QFont font = fonts.font(fontSpec);
    font.setPixelSize(static_cast<int>(std::lround(fontSpec.pointSize * 20)));
    return font;
}

} // namespace

void useTwips(QPainter& painter, double dotsPerInch)
{
    painter.scale(dotsPerInch / 1440.0, dotsPerInch / 1440.0);
}

void paintPage(QPainter& painter, const PageDisplayList& page, const FontCatalog& fonts)
{
    painter.save();
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::Antialiasing);
    FontSpec current;
    bool haveFont = false;
    bool thickened = false;
    for (const DisplayItem& item : page.items) {
        if (const auto* fill = std::get_if<Fill>(&item)) {
            painter.fillRect(fill->rect, fill->color);
        } else if (const auto* rule = std::get_if<Rule>(&item)) {
            QPen pen(rule->color, rule->width);
            pen.setCapStyle(Qt::FlatCap);
            painter.setPen(pen);
            painter.drawLine(rule->line);
        } else if (const auto* run = std::get_if<TextRun>(&item)) {
            if (!haveFont || !(current == run->font)) {
                painter.setFont(twipFont(fonts, run->font));
                current = run->font;
                haveFont = true;
                thickened = fonts.thickened(run->font);
            }
            painter.setPen(run->color);
            drawText(painter, run->origin, run->text, thickened, current.pointSize * 20);
        }
    }
    painter.restore();
}

} // namespace tabulor
