#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PageDocument.h"
#include "production/report/ReportRenderer.h"

#include "QtPrinters.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

struct Drawn
{
    QString text;
    FontSpec font;
    QPointF origin;
};

std::vector<Drawn> texts(const PageDisplayList& page)
{
    std::vector<Drawn> result;
    for (const DisplayItem& item : page.items) {
        if (const auto* run = std::get_if<TextRun>(&item))
            result.push_back(Drawn{run->text, run->font, run->origin});
    }
    return result;
}

const Drawn* find(const std::vector<Drawn>& drawn, const QString& text)
{
    for (const Drawn& d : drawn) {
        if (d.text == text)
            return &d;
    }
    return nullptr;
}

// A one-record report with the given title, header and footer, rendered on one page.
PageDisplayList renderedPage(const QString& title, const QString& header, const QString& footer,
                             const QString& recordSource = QStringLiteral("Orders"))
{
    OutlineGrid grid;
    GridColumn column;
    column.title = QStringLiteral("name");
    grid.setColumns({column});
    grid.appendRow({QStringLiteral("Ann")});
    ReportDefinition d;
    ApplyBuiltInStyles(d, {title, header, footer});
    d.fields = {{QStringLiteral("name"), QStringLiteral("name"), 0, 9, {}, 0, 0}};
    d.details = {QStringLiteral("name")};
    buildReportGrid(grid, d, QCollator());

    TokenContext context;
    context.recordSource = recordSource;
    context.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
    ReportRenderer renderer(d, grid, context);
    PageDocument document;
    document.OverlayHeadersAndFooters = true;
    renderer.RenderReport(document);
    return document.pages().at(0);
}

} // namespace

TEST(ReportTitle, ABraceFirstMakesItRichText)
{
    const auto drawn = texts(renderedPage(
        QStringLiteral(
            R"({\rtf1\ansi{\fonttbl{\f0 Tahoma;}}\qc {\i Quarterly} sales\par\ql second line})"),
        QString(), QString()));
    const Drawn* italic = find(drawn, QStringLiteral("Quarterly"));
    const Drawn* plain = find(drawn, QStringLiteral("sales"));
    const Drawn* second = find(drawn, QStringLiteral("second"));
    ASSERT_TRUE(italic && plain && second);
    EXPECT_TRUE(italic->font.italic);
    EXPECT_FALSE(plain->font.italic);
    // What the text leaves unset comes from the title's style, which is bold.
    EXPECT_TRUE(plain->font.bold);
    EXPECT_EQ(italic->font.pointSize, 12);
    EXPECT_EQ(italic->origin.y(), plain->origin.y());
    EXPECT_GT(second->origin.y(), italic->origin.y());
    EXPECT_GT(italic->origin.x(), second->origin.x()); // centred above a left-aligned line

    // A blank before the brace makes it a plain paragraph: the braces show as text.
    const auto plainTitle =
        texts(renderedPage(QStringLiteral(" {not rich}"), QString(), QString()));
    EXPECT_TRUE(find(plainTitle, QStringLiteral("{not rich}")));
}

TEST(PageHeaders, ShowAtMostThreePartsAndNothingForEmptyOnes)
{
    const auto drawn =
        texts(renderedPage(QString(), QStringLiteral("left|<rs>|Page <p> of <n>|fourth"),
                           QStringLiteral(" | |right only")));
    EXPECT_TRUE(find(drawn, QStringLiteral("left")));
    EXPECT_TRUE(find(drawn, QStringLiteral("Orders")));
    EXPECT_TRUE(find(drawn, QStringLiteral("Page 1 of 1")));
    EXPECT_FALSE(find(drawn, QStringLiteral("fourth")));
    const Drawn* right = find(drawn, QStringLiteral("right only"));
    ASSERT_TRUE(right);
    EXPECT_GT(right->origin.y(), 10 * 1440); // below the bottom margin
    // Left, centre and right parts stand left to right.
    EXPECT_LT(find(drawn, QStringLiteral("left"))->origin.x(),
              find(drawn, QStringLiteral("Orders"))->origin.x());
    EXPECT_LT(find(drawn, QStringLiteral("Orders"))->origin.x(),
              find(drawn, QStringLiteral("Page 1 of 1"))->origin.x());
    // Nothing but the parts, the record and its title were drawn: the empty parts draw nothing.
    EXPECT_EQ(drawn.size(), 6u);

    // Without a record source its token stays as written.
    const auto literal =
        texts(renderedPage(QString(), QStringLiteral("<rs>"), QString(), QString()));
    EXPECT_TRUE(find(literal, QStringLiteral("<rs>")));
}

namespace {

struct CountingSink : PageSink
{
    void addPage(PageDisplayList&&) override { ++pages; }
    void addOverlay(int, std::vector<DisplayItem>&&) override {}
    int pages = 0;
};

} // namespace

// A report without records is one page, its title and column titles, whether the pages stay
// in the document or go to an output as they are made.
TEST(ReportWithoutRecords, IsOnePageWithoutABlankOneBeforeIt)
{
    OutlineGrid grid;
    GridColumn column;
    column.title = QStringLiteral("name");
    grid.setColumns({column});
    ReportDefinition d;
    ApplyBuiltInStyles(d, {QStringLiteral("Nobody"), QString(), QString()});
    d.details = {QStringLiteral("name")};
    buildReportGrid(grid, d, QCollator());

    PageDocument kept;
    ReportRenderer(d, grid, TokenContext()).RenderReport(kept);
    ASSERT_EQ(kept.PageCount(), 1);
    EXPECT_TRUE(find(texts(kept.pages().front()), QStringLiteral("Nobody")));

    PageDocument streamed;
    CountingSink sink;
    streamed.setSink(&sink);
    ReportRenderer(d, grid, TokenContext()).RenderReport(streamed);
    EXPECT_EQ(sink.pages, 1);
}
