#include "definition/ReportDefinition.h"

namespace tabulor {

namespace {

constexpr qint32 kBlack = 0;
constexpr qint32 kWhite = 16777215;
constexpr qint32 kGrey = 12500670; // RGB 190, 190, 190

constexpr qint16 kThinRule = 1;

void setHeading(ReportStyle& style, qint16 level, float fontSize)
{
    style.FontBold = true;
    style.Level = level;
    style.FontSize = fontSize;
    style.Text = kGrey;
    style.Back = kWhite;
}

} // namespace

StyleTable namedStyleTable()
{
    static const std::array<std::pair<const char*, qint16>, kStyleCount> kNames = {{
        {"Report Title", kUnmatchedLevel},
        {"Heading 1 Top", 0},
        {"Heading 2 Top", 1},
        {"Heading 3 Top", 2},
        {"Detail Title", -1},
        {"Detail Body", kUnmatchedLevel},
        {"Heading 3 Bottom", -98},
        {"Heading 2 Bottom", -99},
        {"Heading 1 Bottom", -100},
        {"headers", kUnmatchedLevel},
        {"footers", kUnmatchedLevel},
    }};
    StyleTable table;
    for (int i = 0; i < kStyleCount; ++i) {
        table[i].name = QString::fromLatin1(kNames[i].first);
        table[i].Level = kNames[i].second;
    }
    return table;
}

void ApplyBuiltInStyles(ReportDefinition& definition, const DefaultTexts& texts)
{
    GlobalSettings& g = definition.global;
    g.ReportTitle = texts.reportTitle;
    g.Header = texts.header;
    g.Footer = texts.footer;
    g.Columns = QStringLiteral("1");
    g.PageBorders = 0;
    g.Top = g.Bottom = g.Left = 1440;
    g.Right = 1440 / 2;
    g.WordWrap = true;
    g.SubtotalPosition = 0;
    g.MaxHeight = 2880;
    g.Orientation = 0;

    const StyleTable names = namedStyleTable();
    for (int i = 0; i < kStyleCount; ++i) {
        ReportStyle& s = definition.styles[i];
        s.name = names[i].name;
        s.FontName = QStringLiteral("Tahoma");
        s.FontSize = 8.25f;
        s.Text = kBlack;
        s.Back = kWhite;
        s.Level = kUnmatchedLevel;
    }

    auto& st = definition.styles;
    st[StyleReportTitle].FontBold = true;
    st[StyleReportTitle].FontSize = 12;
    st[StyleReportTitle].Before = 770;
    st[StyleReportTitle].After = 300;

    setHeading(st[StyleHeading1Top], 0, 11);
    st[StyleHeading1Top].Top = kThinRule;
    st[StyleHeading1Top].Before = 300;
    setHeading(st[StyleHeading2Top], 1, 10);
    st[StyleHeading2Top].Top = kThinRule;
    setHeading(st[StyleHeading3Top], 2, 10);
    st[StyleHeading3Top].Top = kThinRule;

    st[StyleDetailTitle].Level = -1;
    st[StyleDetailTitle].FontBold = true;
    st[StyleDetailTitle].Top = kThinRule;
    st[StyleDetailTitle].Bottom = kThinRule;

    setHeading(st[StyleHeading3Bottom], -98, 10);
    st[StyleHeading3Bottom].Bottom = kThinRule;
    setHeading(st[StyleHeading2Bottom], -99, 10);
    st[StyleHeading2Bottom].Bottom = kThinRule;
    setHeading(st[StyleHeading1Bottom], -100, 11);
    st[StyleHeading1Bottom].Bottom = kThinRule;
    st[StyleHeading1Bottom].After = 300;

    st[StyleHeaders].FontBold = true;
    st[StyleHeaders].Bottom = kThinRule;
    st[StyleHeaders].After = 150;
    st[StyleFooters].FontBold = true;
    st[StyleFooters].Top = kThinRule;
    st[StyleFooters].Before = 150;
}

} // namespace tabulor
