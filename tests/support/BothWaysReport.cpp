#include "BothWaysReport.h"

#include "production/grid/ReportGridBuilder.h"
#include "production/report/ReportData.h"
#include "production/report/ReportRenderer.h"
#include "production/report/StreamedBodyRows.h"

#include <QCollator>
#include <QLocale>

namespace tabulor::test {

namespace {

// Everything a page shows, item by item.
QStringList pageItems(const PageDisplayList& page)
{
    QStringList items;
    for (const DisplayItem& item : page.items) {
        if (const auto* run = std::get_if<TextRun>(&item)) {
            items.append(QStringLiteral("text %1 %2 %3 %4")
                             .arg(run->text)
                             .arg(run->origin.x())
                             .arg(run->origin.y())
                             .arg(run->font.bold));
        } else if (const auto* fill = std::get_if<Fill>(&item)) {
            items.append(QStringLiteral("fill %1 %2").arg(fill->rect.y()).arg(fill->rect.height()));
        } else if (const auto* rule = std::get_if<Rule>(&item)) {
            items.append(QStringLiteral("rule %1").arg(rule->line.y1()));
        }
    }
    return items;
}

std::vector<QStringList> itemsOf(const PageDocument& document)
{
    std::vector<QStringList> pages;
    for (const PageDisplayList& page : document.pages())
        pages.push_back(pageItems(page));
    return pages;
}

} // namespace

BothWaysReport renderBothWays(const QString& database, const QString& source,
                              const ReportDefinition& definition)
{
    const QCollator collator{QLocale(QLocale::English)};
    TokenContext context;
    context.recordSource = source;
    context.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
    BothWaysReport report;

    ReportData everything;
    everything.setUnlimitedRows(true);
    everything.OpenDataSource(database, source);
    report.records = everything.grid().recordCount();
    buildReportGrid(everything.grid(), definition, collator);
    PageDocument built;
    built.OverlayHeadersAndFooters = true;
    ReportRenderer fromMemory(definition, everything.grid(), context);
    fromMemory.RenderReport(built);
    report.builtPages = itemsOf(built);

    // The designer's working view, as the report is opened before it is rendered.
    ReportData workingView;
    workingView.OpenDataSource(database, source);
    buildReportGrid(workingView.grid(), definition, collator);
    const auto rows =
        StreamedBodyRows::open(*workingView.CurrentDatabase(), source, workingView.grid(),
                               definition, collator, context.locale);
    report.streamed = rows != nullptr;
    if (!rows)
        return report;
    PageDocument streamed;
    streamed.OverlayHeadersAndFooters = true;
    ReportRenderer fromStream(definition, workingView.grid(), context);
    fromStream.RenderReport(streamed, *rows);
    report.streamedPages = itemsOf(streamed);
    return report;
}

} // namespace tabulor::test
