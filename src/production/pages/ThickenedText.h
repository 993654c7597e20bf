#pragma once

#include "production/base/Export.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QString>

namespace tabulor {

// Draws a line of text at its baseline origin in the painter's font and pen colour; thickened,
// it is drawn bold from a face that is not: outlined in its own colour as well as filled, by
// the same amount as the PDF writer thickens it. emSize is the font's size in painter units.
TABULOR_EXPORT void drawText(QPainter& painter, const QPointF& origin, const QString& text,
                             bool thickened, double emSize);

} // namespace tabulor
