#include "production/grid/GroupedRows.h"

#include <algorithm>

namespace tabulor {

qint16 outlineLevel(RowKind kind, int depth)
{
    return static_cast<qint16>(kind == RowKind::Closing ? -100 + depth : depth);
}

GroupedRows::GroupedRows(OutlineGrid& grid, std::vector<double> grandTotals)
    : m_grid(grid), m_plan(grid.groupPlan()), m_grandTotals(std::move(grandTotals)),
      m_firstRecord(m_plan.levels.size(), -1),
      m_accumulators(m_plan.levels.size(), std::vector<Accumulator>(m_plan.totals.size()))
{
}

void GroupedRows::add(qint32 record)
{
    const int levels = static_cast<int>(m_plan.levels.size());
    int changed = m_previous < 0 ? 0 : levels;
    for (int level = 0; level < levels && changed == levels; ++level) {
        const ColumnCells& cells = m_grid.cells(m_plan.levels[static_cast<size_t>(level)].column);
        if (!sameCellValue(cells, m_previous, record, m_collator))
            changed = level;
    }
    if (m_previous >= 0) {
        for (int level = levels - 1; level >= changed; --level)
            close(level);
    }
    for (int level = changed; level < levels; ++level)
        open(level, record);

    GridRow row;
    row.record = record;
    m_grid.rows().push_back(row);
    if (levels > 0 && m_plan.closing) {
        auto& innermost = m_accumulators.back();
        for (size_t t = 0; t < m_plan.totals.size(); ++t)
            innermost[t].add(m_grid.cell(record, m_plan.totals[t].column));
    }
    m_previous = record;
}

std::vector<qint32> GroupedRows::retainedRecords() const
{
    std::vector<qint32> records;
    if (m_previous < 0)
        return records;
    records.push_back(m_previous);
    for (qint32 first : m_firstRecord) {
        if (first != m_previous)
            records.push_back(first);
    }
    return records;
}

void GroupedRows::renumber(const std::vector<qint32>& retained)
{
    auto newNumber = [&](qint32 record) {
        const auto found = std::find(retained.begin(), retained.end(), record);
        return found == retained.end() ? qint32{-1} : static_cast<qint32>(found - retained.begin());
    };
    m_previous = newNumber(m_previous);
    for (qint32& first : m_firstRecord)
        first = newNumber(first);
}

void GroupedRows::finish()
{
    if (m_previous < 0)
        return;
    for (int level = static_cast<int>(m_plan.levels.size()) - 1; level >= 0; --level)
        close(level);
    m_previous = -1;
}

void GroupedRows::open(int depth, qint32 record)
{
    m_firstRecord[static_cast<size_t>(depth)] = record;
    for (Accumulator& a : m_accumulators[static_cast<size_t>(depth)])
        a.reset();
    if (!m_plan.opening)
        return;
    GridRow row;
    row.record = record;
    row.kind = RowKind::Opening;
    row.depth = static_cast<quint8>(depth);
    row.level = outlineLevel(RowKind::Opening, depth);
    m_grid.rows().push_back(row);
}

void GroupedRows::close(int depth)
{
    if (!m_plan.closing)
        return;
    const auto& accumulators = m_accumulators[static_cast<size_t>(depth)];
    std::vector<CellValue>& values = m_grid.totalValues();
    const size_t block = m_plan.totals.empty() ? 0 : values.size() / m_plan.totals.size();
    for (size_t t = 0; t < m_plan.totals.size(); ++t)
        values.push_back(accumulators[t].result(m_plan.totals[t].aggregate, m_grandTotals[t]));
    if (depth > 0) {
        auto& outer = m_accumulators[static_cast<size_t>(depth - 1)];
        for (size_t t = 0; t < outer.size(); ++t)
            outer[t].merge(accumulators[t]);
    }
    GridRow row;
    row.record = m_firstRecord[static_cast<size_t>(depth)];
    row.outline = static_cast<qint32>(block);
    row.kind = RowKind::Closing;
    row.depth = static_cast<quint8>(depth);
    row.level = outlineLevel(RowKind::Closing, depth);
    m_grid.rows().push_back(row);
}

} // namespace tabulor
