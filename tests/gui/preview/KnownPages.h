#pragma once

#include "production/pages/PageDocument.h"

#include <QGuiApplication>
#include <QImage>
#include <QScreen>

namespace tabulor::test {

// Letter pages whose drawing is known: a line of text in the top margin's corner, a red
// block below it, and a black bar half a screen pixel wide at 100%.
struct KnownPages
{
    static constexpr QSizeF kPaper{12240, 15840};
    static constexpr QRectF kText{1440, 1440, 1440, 200};
    static constexpr QRectF kBlock{1440, 2880, 2880, 1440};

    // The screen's pixels per twip at 100%.
    static double pixelsPerTwip()
    {
        return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 1440;
    }
    // The bar starts on the 300th pixel of the page, right of the block, and is half a pixel
    // wide.
    static QRectF bar() { return QRectF(300 / pixelsPerTwip(), 3600, 0.5 / pixelsPerTwip(), 720); }

    static void write(PageDocument& document, int pages)
    {
        document.setup().paper = kPaper;
        document.StartDoc();
        for (int n = 1; n <= pages; ++n) {
            if (n > 1)
                document.NewPage();
            document.Paragraph(QStringLiteral("Page %1").arg(n));
            document.draw(Fill{kBlock, Qt::red});
            document.draw(Fill{bar(), Qt::black});
        }
        document.EndDoc();
    }
};

// How many pixels of image within rect are dark: ink of text and lines.
inline int inkedPixels(const QImage& image, QRect rect)
{
    int inked = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            inked += qGray(image.pixel(x, y)) < 128;
    }
    return inked;
}

} // namespace tabulor::test
