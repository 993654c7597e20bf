#include "production/pages/ThickenedText.h"

#include "production/fonts/FontMatcher.h"

#include <QPainterPath>
#include <QPen>

namespace tabulor {

void drawText(QPainter& painter, const QPointF& origin, const QString& text, bool thickened,
              double emSize)
{
    painter.drawText(origin, text);
    if (!thickened || text.isEmpty())
        return;
    QPainterPath outline;
    outline.addText(origin, painter.font(), text);
    QPen pen(painter.pen().color(), emSize * kSyntheticBoldStroke);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.strokePath(outline, pen);
}

} // namespace tabulor
