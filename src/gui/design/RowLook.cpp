#include "gui/design/RowLook.h"

#include "gui/models/GridModel.h"
#include "production/pages/ThickenedText.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tabulor {

namespace {

constexpr double kTwipsPerInch = 1440;

// Rule codes 1 thin, 2 medium, 3 thick are as many pixels wide.
int ruleWidth(const QVariant& code)
{
    return std::clamp(code.toInt(), 0, 3);
}

} // namespace

int twipsToPixels(double twips, double dpi)
{
    return static_cast<int>(std::lround(twips * dpi / kTwipsPerInch));
}

double pixelsToTwips(int pixels, double dpi)
{
    return pixels * kTwipsPerInch / dpi;
}

RowLook RowLook::fromRoles(const std::function<QVariant(int)>& role, double dpi)
{
    RowLook look;
    look.font = role(Qt::FontRole).value<QFont>();
    look.thickened = role(GridModel::ThickenedRole).toBool();
    look.text = role(Qt::ForegroundRole).value<QColor>();
    look.back = role(Qt::BackgroundRole).value<QColor>();
    look.rule = role(GridModel::RuleColourRole).value<QColor>();
    look.ruleAbove = ruleWidth(role(GridModel::RuleAboveRole));
    look.ruleBelow = ruleWidth(role(GridModel::RuleBelowRole));
    look.before = twipsToPixels(role(GridModel::SpaceBeforeRole).toDouble(), dpi);
    look.textHeight = twipsToPixels(role(GridModel::TextHeightRole).toDouble(), dpi);
    look.after = twipsToPixels(role(GridModel::SpaceAfterRole).toDouble(), dpi);
    look.padding = twipsToPixels(GridLayout::kCellPadding, dpi);
    return look;
}

void RowLook::paintCell(QPainter& painter, const QRect& cell, const QStringList& lines,
                        Qt::Alignment alignment) const
{
    const QRect band(cell.left(), cell.top() + before, cell.width(),
                     ruleAbove + textHeight + ruleBelow);
    painter.save();
    painter.setClipRect(band, Qt::IntersectClip);
    painter.fillRect(band, back);
    painter.setFont(font);
    painter.setPen(text);
    const QFontMetricsF metrics(font, painter.device());
    const double inner = cell.width() - 2 * padding;
    double baseline = band.top() + ruleAbove + metrics.ascent();
    for (const QString& line : lines) {
        double x = band.left() + padding;
        if (alignment & Qt::AlignRight)
            x += inner - metrics.horizontalAdvance(line);
        else if (alignment & Qt::AlignHCenter)
            x += (inner - metrics.horizontalAdvance(line)) / 2;
        drawText(painter, QPointF(x, std::round(baseline)), line, thickened,
                 QFontInfo(font).pixelSize());
        baseline += metrics.height();
    }
    painter.fillRect(QRect(band.left(), band.top(), band.width(), ruleAbove), rule);
    painter.fillRect(QRect(band.left(), band.bottom() + 1 - ruleBelow, band.width(), ruleBelow),
                     rule);
    painter.restore();
}

} // namespace tabulor
