#include "production/pages/FontCatalog.h"
#include "production/fonts/FontMatcher.h"

#include <QFontInfo>

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
