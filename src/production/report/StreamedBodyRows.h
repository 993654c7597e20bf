#pragma once

#include "definition/ReportDefinition.h"
#include "production/base/BoundedQueue.h"
#include "production/data/DataSource.h"
#include "production/formats/FormatLocale.h"
#include "production/grid/OutlineGrid.h"
#include "production/report/BodyRows.h"

#include <QCollator>

#include <memory>
#include <vector>

namespace tabulor {

// The body rows of a report whose records the database hands over already in report order.
// Records are read a chunk at a time into a grid of their own, their group rows made as they
// come, and each chunk dropped once its rows are laid out, so that memory stays the same
// whatever the number of records. The rows come out as a report built in memory would give
// them. Reading, grouping and formatting run on a thread of their own, beside the layout.
class StreamedBodyRows final : public BodyRows
{
public:
    // How many records a chunk holds, and how many chunks of rows the reading may run ahead
    // of the layout.
    static constexpr qsizetype kChunkRecords = 256;
    static constexpr size_t kChunksAhead = 8;

    // report is the built report (its columns, their settings and the group plan); its
    // records are not used. Null when the database cannot sort the record source.
    static std::unique_ptr<StreamedBodyRows> open(DataSource& database, const QString& recordSource,
                                                  const OutlineGrid& report,
                                                  const ReportDefinition& definition,
                                                  const QCollator& collator, FormatLocale locale);

    bool empty() const override { return m_records->atEnd(); }
    std::vector<BodyRow> laterRowsToFit() const override { return m_laterRowsToFit; }
    void writeTo(ReportBody& body) override;
    // Why the records stopped before the end of the record source, once writeTo returned: the
    // rows written then end there, without the closing rows of the open groups. Empty when
    // every record was read.
    const QString& readError() const { return m_readError; }

private:
    StreamedBodyRows(std::unique_ptr<Recordset> records, const OutlineGrid& report,
                     const ReportDefinition& definition, FormatLocale locale);

    // Reads the whole record source once before the report: for the grand totals that
    // Percent needs, and for the widest values and totals, which the columns must fit. False
    // when it cannot be read to the end.
    bool surveyRecords(DataSource& database, const QString& recordSource);
    // Reads every record, and queues the rows chunk by chunk until the queue is cancelled.
    void produceRows(BoundedQueue<std::vector<BodyRow>>& queue);
    // The rows made so far; drops the records no open group needs.
    std::vector<BodyRow> takeRows(class GroupedRows& grouped, class GridText& text);

    std::unique_ptr<Recordset> m_records;
    const ReportDefinition& m_definition;
    FormatLocale m_locale;
    OutlineGrid m_chunk;
    std::vector<double> m_grandTotals; // per entry of the plan's totals
    std::vector<BodyRow> m_laterRowsToFit;
    QString m_readError;
};

} // namespace tabulor
