#include "definition/DefaultStyle.h"

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

ReportDefinition builtIn()
{
    ReportDefinition d;
    ApplyBuiltInStyles(
        d, {QStringLiteral("title"), QStringLiteral("header"), QStringLiteral("footer")});
    return d;
}

} // namespace

TEST(DefaultStyle, WithoutSettingsTheBuiltInLookStands)
{
    ReportDefinition d = builtIn();
    EXPECT_TRUE(LoadDefaultStyle(d, ProfileFile()));
    EXPECT_EQ(d, builtIn());
}

TEST(DefaultStyle, SavedLookComesBackWithoutUnderlineOrStrikeThrough)
{
    ReportDefinition styled = builtIn();
    styled.global.Header = QStringLiteral("<rs>||<p>");
    styled.global.WidowOK = true;
    styled.global.MaxHeight = -5;
    styled.styles[StyleHeading1Top].FontUnderline = true;
    styled.styles[StyleHeading1Top].FontStrikeThru = true;
    styled.styles[StyleHeading1Top].FontItalic = true;
    styled.styles[StyleDetailBody].FontSize = 9.75f;
    styled.styles[StyleDetailBody].Color = 0x00FF8040;

    ProfileFile settings;
    SaveDefaultStyle(styled, settings);

    ReportDefinition fresh = builtIn();
    ASSERT_TRUE(LoadDefaultStyle(fresh, settings));
    EXPECT_EQ(fresh.global, styled.global);
    EXPECT_FALSE(fresh.styles[StyleHeading1Top].FontUnderline);
    EXPECT_FALSE(fresh.styles[StyleHeading1Top].FontStrikeThru);
    EXPECT_TRUE(fresh.styles[StyleHeading1Top].FontItalic);
    EXPECT_EQ(fresh.styles[StyleDetailBody], styled.styles[StyleDetailBody]);

    // Loading defaults leaves underline and strike-through as the report had them.
    fresh.styles[StyleHeading2Top].FontUnderline = true;
    ASSERT_TRUE(LoadDefaultStyle(fresh, settings));
    EXPECT_TRUE(fresh.styles[StyleHeading2Top].FontUnderline);
}

TEST(DefaultStyle, KeysAreWrittenInTheirFixedOrder)
{
    ProfileFile settings;
    SaveDefaultStyle(builtIn(), settings);
    const QString text = QString::fromUtf8(settings.toBytes());
    EXPECT_TRUE(text.startsWith(
        QStringLiteral("[Global]\r\nReportTitle=title\r\nAlign=0\r\nHeader=header\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral(
        "[Style 5]\r\nFontName=Tahoma\r\nFontSize=8.25\r\nFontBold=False\r\nFontItalic=False\r\n"
        "Text=0\r\nTop=0\r\nBottom=0\r\nColor=0\r\nBack=16777215\r\nBefore=0\r\nAfter=0\r\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("Underline")));
}

TEST(DefaultStyle, LongTextsComeBackCutTo127Characters)
{
    ReportDefinition d = builtIn();
    d.global.Header = QString(200, u'h');
    ProfileFile settings;
    SaveDefaultStyle(d, settings);
    ReportDefinition fresh = builtIn();
    ASSERT_TRUE(LoadDefaultStyle(fresh, settings));
    EXPECT_EQ(fresh.global.Header, QString(127, u'h'));
}

TEST(DefaultStyle, ABadValueStopsTheLoadAndKeepsWhatWasReadBefore)
{
    const ProfileFile settings = ProfileFile::fromText(QStringLiteral("[Global]\n"
                                                                      "ReportTitle=Mine\n"
                                                                      "Top=100\n"
                                                                      "Left=wide\n"
                                                                      "Right=50\n"
                                                                      "[Style 0]\n"
                                                                      "FontSize=11pt\n"));
    ReportDefinition d = builtIn();
    QString badKey;
    EXPECT_FALSE(LoadDefaultStyle(d, settings, &badKey));
    EXPECT_EQ(badKey, QStringLiteral("[Global] Left"));
    EXPECT_EQ(d.global.ReportTitle, QStringLiteral("Mine"));
    EXPECT_EQ(d.global.Top, 100);
    EXPECT_EQ(d.global.Left, 1440);
    EXPECT_EQ(d.global.Right, 720);
    // The font size alone takes a leading number and never fails.
    const ProfileFile sizeOnly =
        ProfileFile::fromText(QStringLiteral("[Style 0]\nFontSize=11pt\n"));
    ASSERT_TRUE(LoadDefaultStyle(d, sizeOnly));
    EXPECT_EQ(d.styles[0].FontSize, 11.0f);
}
