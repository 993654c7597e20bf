#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>
#include <QVariant>

#include <functional>

class QPainter;
class QRect;

namespace tabulor {

// Report lengths (twips) on a screen of the given logical resolution (dots per inch).
int twipsToPixels(double twips, double dpi);
double pixelsToTwips(int pixels, double dpi);

// How a row of the report is painted on the screen, in device-independent pixels: from the
// top, the space before it, then on its back colour the rule above, its text and the rule
// below, then the space after it. The rules take pixels of their own, so that they never cross
// the text on a screen whose letters are a pixel taller than the printed ones.
struct RowLook
{
    QFont font;
    bool thickened = false; // bold drawn from a face that is not
    QColor text;
    QColor back;
    QColor rule;
    int ruleAbove = 0; // rule widths
    int ruleBelow = 0;
    int before = 0;
    int textHeight = 0;
    int after = 0;
    int padding = 0; // between a cell's edges and its text

    // A row's look from the roles of a GridModel, as role(role) gives them for the row.
    static RowLook fromRoles(const std::function<QVariant(int)>& role, double dpi);

    int height() const { return before + ruleAbove + textHeight + ruleBelow + after; }
    // Paints one cell of the row: the back colour behind the text, the rules, and the lines
    // of text one below the other.
    void paintCell(QPainter& painter, const QRect& cell, const QStringList& lines,
                   Qt::Alignment alignment) const;
};

} // namespace tabulor
