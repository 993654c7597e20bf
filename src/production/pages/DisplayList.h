#pragma once

#include <QColor>
#include <QLineF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <variant>
#include <vector>

namespace tabulor {

// What a page shows, recorded once and played back on any output: the preview, PDF, PNG and
// the printer. Lengths are in twips from the page's top left corner; colours are RGB.

// A font as a style names it, before it is matched to a font of this system.
struct FontSpec
{
    QString family;
    double pointSize = 8.25;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;

    // The family last, and its text only when it is not the same shared string: fonts are
    // compared for every run of text written.
    bool operator==(const FontSpec& other) const
    {
        return pointSize == other.pointSize && bold == other.bold && italic == other.italic &&
               underline == other.underline && strikeOut == other.strikeOut &&
               (family.constData() == other.family.constData() || family == other.family);
    }
};

// One line of text in one font, starting at origin on its baseline.
struct TextRun
{
    QPointF origin;
    QString text;
    FontSpec font;
    QColor color = Qt::black;
};

// A straight line of the given width (twips).
struct Rule
{
    QLineF line;
    double width = 15;
    QColor color = Qt::black;
};

// A filled rectangle.
struct Fill
{
    QRectF rect;
    QColor color = Qt::white;
};

using DisplayItem = std::variant<Fill, Rule, TextRun>;

struct PageDisplayList
{
    QSizeF size; // twips
    std::vector<DisplayItem> items;
};

} // namespace tabulor
