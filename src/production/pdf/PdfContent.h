#pragma once

#include "production/pages/DisplayList.h"
#include "production/pdf/PdfSyntax.h"

namespace tabulor {

class PdfText;
struct PdfTextStyle;

// Turns a display list into the operators of a content stream, in PDF units (points, origin
// at the bottom left). Graphics state is only set when it changes, consecutive rules and
// fills of one colour become one path, and consecutive texts share one text object.
class PdfContent
{
public:
    explicit PdfContent(PdfText& text);

    // The content stream of a page; valid until the next call.
    QByteArrayView write(const PageDisplayList& page);

private:
    enum class Path
    {
        None,
        Stroke,
        Fill
    };

    void add(const Fill& fill);
    void add(const Rule& rule);
    void add(const TextRun& run);
    void line(qint64 x1, qint64 y1, qint64 x2, qint64 y2, qint64 width, QRgb color);
    void beginText();
    void endText();
    void flushPath();
    void setFill(QRgb color);
    void setStroke(QRgb color, qint64 width);
    void setRenderMode(int mode);
    qint64 x(double twips) const;
    qint64 y(double twips) const;

    PdfText& m_text;
    PdfBuffer m_out;
    qint64 m_height = 0;
    // The graphics state as the stream has set it; -1 where it has not.
    qint64 m_fill = -1;
    qint64 m_stroke = -1;
    qint64 m_lineWidth = -1;
    int m_renderMode = 0;
    int m_font = 0;
    qint64 m_fontSize = 0;
    bool m_inText = false;
    qint64 m_lineX = 0; // the text line origin
    qint64 m_lineY = 0;
    bool m_slanted = false;
    Path m_path = Path::None;
    FontSpec m_lastFont;
    int m_lastRequest = -2;
};

} // namespace tabulor
