#include "production/report/StreamedBodyRows.h"

#include "production/grid/GridText.h"
#include "production/grid/GroupedRows.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pagination/WidestRows.h"

#include <thread>

#include <pthread.h>

namespace tabulor {

namespace {

QList<GridColumn> columnsOf(const OutlineGrid& grid)
{
    QList<GridColumn> columns;
    for (int c = 0; c < grid.columnCount(); ++c)
        columns.append(grid.column(c));
    return columns;
}

bool sameFields(const Recordset& records, const OutlineGrid& grid)
{
    if (records.fieldCount() != grid.columnCount())
        return false;
    for (int c = 0; c < grid.columnCount(); ++c) {
        if (records.fieldName(c) != grid.column(c).title)
            return false;
    }
    return true;
}

} // namespace

std::unique_ptr<StreamedBodyRows>
StreamedBodyRows::open(DataSource& database, const QString& recordSource, const OutlineGrid& report,
                       const ReportDefinition& definition, const QCollator& collator,
                       FormatLocale locale)
{
    QList<SortField> order;
    for (const SortKey& key : reportSortKeys(report))
        order.append(SortField{report.column(key.column).title, key.descending});
    QString error;
    std::unique_ptr<Recordset> records = database.openSorted(recordSource, order, collator, &error);
    if (!records || !sameFields(*records, report))
        return nullptr;
    std::unique_ptr<StreamedBodyRows> rows(
        new StreamedBodyRows(std::move(records), report, definition, std::move(locale)));
    if (!rows->surveyRecords(database, recordSource))
        return nullptr;
    return rows;
}

StreamedBodyRows::StreamedBodyRows(std::unique_ptr<Recordset> records, const OutlineGrid& report,
                                   const ReportDefinition& definition, FormatLocale locale)
    : m_records(std::move(records)), m_definition(definition), m_locale(std::move(locale))
{
    m_chunk.setColumns(columnsOf(report));
    m_chunk.setReportColumns(report.reportColumns());
    m_chunk.setGroupPlan(report.groupPlan());
    m_grandTotals.assign(report.groupPlan().totals.size(), 0.0);
}

bool StreamedBodyRows::surveyRecords(DataSource& database, const QString& recordSource)
{
    // Summed here, record by record in the source's order, exactly as the grid sums them.
    QString error;
    const std::unique_ptr<Recordset> records =
        database.openRecordSource(recordSource, std::nullopt, &error);
    if (!records || !sameFields(*records, m_chunk))
        return false;
    WidestRows widest(m_chunk);
    bool ok = records->moveFirst();
    while (ok && !records->atEnd()) {
        widest.add(m_chunk, m_chunk.appendRecord(*records));
        if (m_chunk.recordCount() >= kChunkRecords)
            m_chunk.keepRecords({});
        ok = records->moveNext();
    }
    m_chunk.keepRecords({});
    if (!records->readError().isEmpty())
        return false;
    for (size_t t = 0; t < m_grandTotals.size(); ++t)
        m_grandTotals[t] = widest.sum(t);
    m_laterRowsToFit = widest.rows(GridText(m_chunk, m_locale), m_definition.styles);
    return true;
}

void StreamedBodyRows::writeTo(ReportBody& body)
{
    // The records are read, grouped and formatted on a thread of their own while this one
    // lays the rows out; the queue keeps the reading a few chunks ahead at most.
    BoundedQueue<std::vector<BodyRow>> queue(kChunksAhead);
    std::thread reader([&] {
        pthread_setname_np(pthread_self(), "tabulor-rows");
        produceRows(queue);
        queue.close();
    });
    while (std::optional<std::vector<BodyRow>> rows = queue.pop()) {
        for (BodyRow& row : *rows) {
            if (body.stopped())
                break;
            body.add(std::move(row));
        }
        if (body.stopped())
            queue.cancel();
    }
    reader.join();
}

void StreamedBodyRows::produceRows(BoundedQueue<std::vector<BodyRow>>& queue)
{
    GroupedRows grouped(m_chunk, m_grandTotals);
    GridText text(m_chunk, m_locale);
    bool ok = !m_records->atEnd();
    while (ok) {
        grouped.add(m_chunk.appendRecord(*m_records));
        if (m_chunk.recordCount() >= kChunkRecords && !queue.push(takeRows(grouped, text)))
            return;
        ok = m_records->moveNext() && !m_records->atEnd();
    }
    // The totals of records that could not all be read would be wrong, so none are made.
    m_readError = m_records->readError();
    if (!m_readError.isEmpty())
        return;
    grouped.finish();
    queue.push(takeRows(grouped, text));
}

std::vector<BodyRow> StreamedBodyRows::takeRows(GroupedRows& grouped, GridText& text)
{
    std::vector<BodyRow> rows;
    rows.reserve(m_chunk.rows().size());
    for (GridRow& row : m_chunk.rows()) {
        row.style = static_cast<qint16>(StyleForRow(m_definition.styles, row));
        rows.push_back(BodyRow{row.kind, paintStyle(row), text.rowTexts(row)});
    }
    const std::vector<qint32> retained = grouped.retainedRecords();
    m_chunk.keepRecords(retained);
    grouped.renumber(retained);
    return rows;
}

} // namespace tabulor
