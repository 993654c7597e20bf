#include "production/pagination/GridLayout.h"
#include "production/grid/GridText.h"
#include "production/grid/ReportGridBuilder.h"

#include "QtPrinters.h"

#include <QFontInfo>
#include <QLocale>

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

QFont tahoma()
{
    ReportStyle style;
    style.FontName = QStringLiteral("Tahoma");
    style.FontSize = 8.25f;
    return FontCatalog().font(style);
}

} // namespace

TEST(FontCatalog, TheClassicDefaultFaceHasItsMetricCompatibleStandIn)
{
    FontCatalog fonts;
    ReportStyle style;
    style.FontName = QStringLiteral("Tahoma");
    style.FontSize = 8.25f;
    EXPECT_EQ(QFontInfo(fonts.font(style)).family(), QStringLiteral("Tahoma"))
        << "the Windows-compatibility fonts package is missing";
    style.FontName = QStringLiteral("No Such Face 1234");
    fonts.font(style);
    ASSERT_EQ(fonts.substitutions().size(), 1);
    EXPECT_TRUE(fonts.substitutions().first().startsWith(
        QStringLiteral("No Such Face 1234 (replaced by ")));
}

TEST(TextMeasure, KeepsTextThatFitsAndMarksTextThatDoesNot)
{
    const TextMeasure m(tahoma());
    const QString text = QStringLiteral("Harbourside Traders");
    const double full = m.width(text);
    EXPECT_GT(full, 1000); // twips: about an inch at 8.25 points
    EXPECT_LT(full, 2000);

    // Exactly the width still fits; a twip less cuts it.
    EXPECT_EQ(m.lines(text, full, false, 1), QStringList{text});
    const QString cut = m.lines(text, full - 1, false, 1).first();
    EXPECT_TRUE(cut.endsWith(QStringLiteral("...")));
    EXPECT_LE(m.width(cut), full - 1);
    EXPECT_EQ(m.elided(text, 0), QStringLiteral("..."));
}

TEST(TextMeasure, WrapsAtBlanksBreaksLongWordsAndStopsAtTheLineLimit)
{
    const TextMeasure m(tahoma());
    const QString text = QStringLiteral("one two three four five six");
    const double width = m.width(QStringLiteral("one two three"));
    const QStringList wrapped = m.lines(text, width, true, 10);
    EXPECT_EQ(wrapped, (QStringList{"one two three", "four five six"}));

    const QStringList limited = m.lines(text, m.width(QStringLiteral("one two")), true, 2);
    ASSERT_EQ(limited.size(), 2);
    EXPECT_EQ(limited.first(), QStringLiteral("one two"));
    EXPECT_TRUE(limited.last().endsWith(QStringLiteral("...")));

    const QStringList broken = m.lines(QStringLiteral("Donaudampfschifffahrt"),
                                       m.width(QStringLiteral("Donau")), true, 10);
    EXPECT_GE(broken.size(), 4);
    EXPECT_EQ(broken.join(QString()), QStringLiteral("Donaudampfschifffahrt"));
    for (const QString& line : broken)
        EXPECT_LE(m.width(line), m.width(QStringLiteral("Donau")));

    // Without wrapping a second line of a text shows as "..." on the first.
    EXPECT_TRUE(
        m.lines(QStringLiteral("a\nb"), 5000, false, 5).first().endsWith(QStringLiteral("...")));
}

TEST(GridLayout, WidthsAreStoredOrFittedAndHeightsFollowTheWrappedText)
{
    OutlineGrid grid;
    GridColumn name;
    name.title = QStringLiteral("name");
    GridColumn note;
    note.title = QStringLiteral("note");
    grid.setColumns({name, note});
    grid.appendRow({QStringLiteral("Ann"), QStringLiteral("short")});
    grid.appendRow({QStringLiteral("Bob"),
                    QStringLiteral("a rather long note that has to wrap over several lines")});
    ReportDefinition d;
    ApplyBuiltInStyles(d, {});
    d.fields = {{QStringLiteral("name"), QStringLiteral("Customer name"), 0, 9, {}, 0, 0},
                {QStringLiteral("note"), QStringLiteral("note"), 0, 9, {}, 0, 1500}};
    d.details = {QStringLiteral("name"), QStringLiteral("note")};
    buildReportGrid(grid, d, QCollator());
    grid.column(1).width = 1500;
    const GridText text(grid, FormatLocale::fromQLocale(QLocale(QLocale::English)));
    std::vector<BodyRow> rows;
    for (const GridRow& row : grid.rows())
        rows.push_back(BodyRow{row.kind, paintStyle(row), text.rowTexts(row)});
    const FontCatalog fonts;

    const GridLayout layout(grid, rows, d, fonts);
    // The first column fits its title, which is wider than its values, inside the padding.
    const double titleWidth =
        layout.measure(StyleDetailTitle).width(QStringLiteral("Customer name"));
    EXPECT_DOUBLE_EQ(layout.columnWidths()[0], titleWidth + 2 * GridLayout::kCellPadding);
    EXPECT_EQ(layout.columnWidths()[1], 1500);
    EXPECT_EQ(layout.titles(), (QStringList{"Customer name", "note"}));

    const double line = layout.measure(StyleDetailBody).lineHeight();
    auto height = [&](const GridLayout& l, const BodyRow& row) {
        return l.heightOf(l.linesOf(row.texts, row.style), row.style);
    };
    EXPECT_DOUBLE_EQ(height(layout, rows[0]), line);
    const QStringList noteLines = layout.linesOf(rows[1].texts, rows[1].style).cell(1);
    EXPECT_GE(noteLines.size(), 3);
    EXPECT_DOUBLE_EQ(height(layout, rows[1]), line * static_cast<double>(noteLines.size()));

    // The maximum row height caps the lines; the last shown line ends with "...".
    d.global.MaxHeight = static_cast<qint32>(2 * line + 1);
    const GridLayout capped(grid, rows, d, fonts);
    EXPECT_DOUBLE_EQ(height(capped, rows[1]), 2 * line);
    EXPECT_TRUE(capped.linesOf(rows[1].texts, rows[1].style)
                    .cell(1)
                    .last()
                    .endsWith(QStringLiteral("...")));

    d.global.WordWrap = false;
    const GridLayout single(grid, rows, d, fonts);
    EXPECT_DOUBLE_EQ(height(single, rows[1]), line);
}
