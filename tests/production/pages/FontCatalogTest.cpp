#include "production/pages/FontCatalog.h"
#include "production/fonts/FontMatcher.h"
#include "production/pages/PagePainter.h"

#include <QFontInfo>
#include <QImage>

#include <gtest/gtest.h>

using namespace tabulor;

// The layout measures text with the face that the PDF writer embeds: both come from one match.
TEST(FontCatalog, MeasuresWithTheFaceThePdfEmbeds)
{
    const FontCatalog fonts;
    const FontMatcher matcher;
    for (const QString& family : {QStringLiteral("Tahoma"), QStringLiteral("DejaVu Serif"),
                                  QStringLiteral("No Such Face Anywhere")}) {
        const std::optional<FontMatch> match = matcher.match(family, false, false);
        ASSERT_TRUE(match) << family.toStdString();
        const QFont font = fonts.font(FontSpec{family, 10});
        EXPECT_EQ(QFontInfo(font).family(), match->family) << family.toStdString();
    }
    // The classic default face has its metric-compatible stand-in, which is no substitute;
    // a face that is not installed is named with what replaced it.
    EXPECT_EQ(
        fonts.substitutions(),
        QStringList{
            QStringLiteral("No Such Face Anywhere (replaced by %1)")
                .arg(
                    matcher.match(QStringLiteral("No Such Face Anywhere"), false, false)->family)});
}

namespace {

// The dark pixels of one line of text painted on a page at 300 dots per inch.
qint64 ink(const FontCatalog& fonts, const FontSpec& font)
{
    PageDisplayList page{QSizeF(6 * 1440, 720), {}};
    page.items.push_back(TextRun{QPointF(100, 500), QStringLiteral("Illinois Hamburg 1234"), font});
    QImage image(1250, 150, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    useTwips(painter, 300);
    paintPage(painter, page, fonts);
    painter.end();
    qint64 dark = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            dark += qGray(image.pixel(x, y)) < 128;
    return dark;
}

} // namespace

// A bold face whose strokes are no heavier than its regular face's (the stand-in for the
// classic default face has one) is thickened, on pages as in the PDF, so that bold headings
// look bold; a real bold face is drawn as it is.
TEST(FontCatalog, BoldThatLooksRegularIsThickened)
{
    const FontCatalog fonts;
    const FontMatcher matcher;
    const FontSpec tahoma{QStringLiteral("Tahoma"), 12};
    FontSpec tahomaBold = tahoma;
    tahomaBold.bold = true;
    const FontSpec dejaVu{QStringLiteral("DejaVu Sans"), 12};
    FontSpec dejaVuBold = dejaVu;
    dejaVuBold.bold = true;

    ASSERT_EQ(matcher.match(tahoma.family, true, false)->family, QStringLiteral("Tahoma"));
    EXPECT_TRUE(matcher.match(tahoma.family, true, false)->syntheticBold);
    EXPECT_FALSE(matcher.match(dejaVu.family, true, false)->syntheticBold);
    EXPECT_TRUE(fonts.thickened(tahomaBold));
    EXPECT_FALSE(fonts.thickened(tahoma));
    EXPECT_FALSE(fonts.thickened(dejaVuBold));

    // Bold carries a good part more ink than regular, in either face.
    EXPECT_GT(double(ink(fonts, tahomaBold)) / ink(fonts, tahoma), 1.25);
    EXPECT_GT(double(ink(fonts, dejaVuBold)) / ink(fonts, dejaVu), 1.25);
}
