#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PageDocument.h"
#include "production/report/ReportRenderer.h"

#include "QtPrinters.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <map>

using namespace tabulor;

namespace {

// Fonts sizes tell the kinds of rows apart on the pages.
constexpr double kTitleRow = 9;
constexpr double kOpening = 11;
constexpr double kClosing = 12;
constexpr double kData = 8.25;

struct Report
{
    OutlineGrid grid;
    ReportDefinition definition;
};

// Groups of the given sizes; each record's "n" is its number from 1.
Report groupedReport(const std::vector<int>& groupSizes, bool widowOK)
{
    Report r;
    GridColumn group;
    group.title = QStringLiteral("grp");
    GridColumn n;
    n.title = QStringLiteral("n");
    n.type = FieldLong;
    r.grid.setColumns({group, n});
    int number = 0;
    for (size_t g = 0; g < groupSizes.size(); ++g) {
        for (int i = 0; i < groupSizes[g]; ++i)
            r.grid.appendRow({QStringLiteral("G%1").arg(g, 2, 10, QChar(u'0')), ++number});
    }
    ReportDefinition& d = r.definition;
    ApplyBuiltInStyles(d, {QString(), QStringLiteral("<p>/<n>"), QString()});
    d.global.ReportTitle.clear();
    d.global.SubtotalPosition = 2;
    d.global.WidowOK = widowOK;
    d.global.Top = d.global.Bottom = d.global.Left = d.global.Right = 720;
    d.styles[StyleDetailTitle].FontSize = kTitleRow;
    d.styles[StyleHeading1Top].FontSize = kOpening;
    d.styles[StyleHeading1Top].Before = 0;
    d.styles[StyleHeading1Bottom].FontSize = kClosing;
    d.styles[StyleHeading1Bottom].After = 0;
    d.fields = {{QStringLiteral("grp"), QStringLiteral("grp"), 1, 9, {}, 0, 0},
                {QStringLiteral("n"), QStringLiteral("n"), 1, 9, {}, AggregateCount, 0}};
    d.groups = {QStringLiteral("grp")};
    d.details = {QStringLiteral("n")};
    buildReportGrid(r.grid, d, QCollator());
    return r;
}

struct PageRow
{
    double y;
    double size;
    QString text;
};

// The rows of each page of the body, by baseline, left to right, with the font size of
// their first text (the page header is left out).
std::vector<std::vector<PageRow>> bodyRows(const PageDocument& document, double x = -1)
{
    std::vector<std::vector<PageRow>> pages;
    for (const PageDisplayList& page : document.pages()) {
        std::map<std::pair<double, double>, PageRow> rows; // by column, then baseline
        for (const DisplayItem& item : page.items) {
            const auto* run = std::get_if<TextRun>(&item);
            if (!run || run->text.contains(u'/'))
                continue;
            const double column = x < 0 ? 0 : std::floor(run->origin.x() / x);
            auto& row = rows[{column, run->origin.y()}];
            if (row.text.isEmpty())
                row = PageRow{run->origin.y(), run->font.pointSize, run->text};
        }
        std::vector<PageRow> list;
        for (const auto& [key, row] : rows)
            list.push_back(row);
        pages.push_back(list);
    }
    return pages;
}

std::unique_ptr<PageDocument> render(const Report& r, double paperHeight, int columns = 1)
{
    auto document = std::make_unique<PageDocument>();
    document->setup().paper = QSizeF(8 * 1440, paperHeight);
    document->OverlayHeadersAndFooters = true;
    Report copy = r;
    copy.definition.global.Columns = QString::number(columns);
    TokenContext context;
    context.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
    ReportRenderer renderer(copy.definition, r.grid, context);
    renderer.RenderReport(*document);
    return document;
}

int dataRows(const std::vector<std::vector<PageRow>>& pages)
{
    int count = 0;
    for (const auto& page : pages) {
        for (const PageRow& row : page)
            count += row.size == kData;
    }
    return count;
}

} // namespace

TEST(Pagination, EveryPageStartsWithTheTitleRowAndCarriesItsHeader)
{
    const Report r = groupedReport({7, 3, 12, 5, 9, 4}, true);
    const auto document = render(r, 4 * 1440);
    ASSERT_GE(document->PageCount(), 3);
    const auto pages = bodyRows(*document);
    for (size_t p = 0; p < pages.size(); ++p) {
        ASSERT_FALSE(pages[p].empty());
        EXPECT_EQ(pages[p].front().size, kTitleRow) << "page " << p + 1;
        // The header shows this page and the final count.
        const QString header = QStringLiteral("%1/%2").arg(p + 1).arg(document->PageCount());
        const auto& items = document->pages()[p].items;
        EXPECT_TRUE(std::any_of(items.begin(), items.end(), [&](const DisplayItem& item) {
            const auto* run = std::get_if<TextRun>(&item);
            return run && run->text == header;
        })) << header.toStdString();
    }
    EXPECT_EQ(dataRows(pages), 40);
    // The same report gives the same pages.
    EXPECT_EQ(render(r, 4 * 1440)->PageCount(), document->PageCount());
}

TEST(Pagination, WidowControlKeepsHeadingsAndClosingRowsWithTheirRecords)
{
    const Report r = groupedReport({2, 5, 1, 6, 3, 2, 7, 1, 4}, false);
    for (double height : {3.0 * 1440, 3.3 * 1440, 3.6 * 1440, 4.1 * 1440}) {
        const auto pages = bodyRows(*render(r, height));
        ASSERT_GT(pages.size(), 2u);
        for (size_t p = 0; p < pages.size(); ++p) {
            const auto& rows = pages[p];
            EXPECT_NE(rows.back().size, kOpening) << "a heading ends page " << p + 1;
            if (p > 0 && rows.size() > 1) {
                EXPECT_NE(rows[1].size, kClosing) << "a closing row starts page " << p + 1;
            }
        }
        EXPECT_EQ(dataRows(pages), 31);
    }
}

TEST(Pagination, AGroupTallerThanAPageStillBreaks)
{
    const Report r = groupedReport({60}, false);
    const auto pages = bodyRows(*render(r, 3 * 1440));
    EXPECT_GT(pages.size(), 3u);
    EXPECT_EQ(dataRows(pages), 60);
}

TEST(Pagination, NewspaperColumnsEachStartWithTheTitleRow)
{
    const Report r = groupedReport({20, 20}, true);
    const auto one = render(r, 4 * 1440);
    const auto two = render(r, 4 * 1440, 2);
    EXPECT_LT(two->PageCount(), one->PageCount());
    // Columns are split at the middle of the page.
    const auto pages = bodyRows(*two, 4 * 1440);
    int titleRows = 0;
    for (const auto& page : pages) {
        for (const PageRow& row : page)
            titleRows += row.size == kTitleRow;
    }
    EXPECT_GE(titleRows, 2 * two->PageCount() - 1);
    EXPECT_EQ(dataRows(pages), 40);
}

TEST(Pagination, AnEmptyReportHasNoHeadersOrFooters)
{
    Report r = groupedReport({}, true);
    r.definition.global.ReportTitle = QStringLiteral("Nothing");
    const auto document = render(r, 4 * 1440);
    ASSERT_EQ(document->PageCount(), 1);
    std::vector<QString> texts;
    for (const DisplayItem& item : document->pages()[0].items) {
        if (const auto* run = std::get_if<TextRun>(&item))
            texts.push_back(run->text);
    }
    EXPECT_EQ(texts, (std::vector<QString>{QStringLiteral("Nothing"), QStringLiteral("grp"),
                                           QStringLiteral("n")}));
}
