#include "production/pages/MissingGlyphs.h"

#include <gtest/gtest.h>

using namespace tabulor;

// Cuneiform is in none of the faces this system installs; Latin, Greek, Arabic and Hebrew are.
TEST(MissingGlyphs, AScriptNoFontHasIsToldOnceWithItsFirstCharacter)
{
    MissingGlyphs glyphs;
    EXPECT_TRUE(glyphs
                    .newlyMissing(QString::fromUtf8("M\xC3\xBCller \xCE\xB1\xCE\xB2 "
                                                    "\xD8\xA7\xD9\x84 \xD7\xA9"))
                    .isEmpty());

    const QString cuneiform = QString::fromUtf8("tablet \xF0\x92\x80\x80\xF0\x92\x80\x81");
    EXPECT_EQ(glyphs.newlyMissing(cuneiform),
              QStringList{QString::fromUtf8("no installed font has U+12000 '\xF0\x92\x80\x80'; "
                                            "it and any other such character of its script are "
                                            "drawn as empty boxes")});
    EXPECT_TRUE(glyphs.newlyMissing(cuneiform).isEmpty());
    EXPECT_TRUE(glyphs.newlyMissing(QString::fromUtf8("\xF0\x92\x80\x82")).isEmpty());
}
