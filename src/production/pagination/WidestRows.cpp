#include "production/pagination/WidestRows.h"

#include "production/grid/GroupedRows.h"
#include "production/grid/ReportGridBuilder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tabulor {

namespace {

CellValue negated(CellValue cell)
{
    if ((cell.kind == CellValue::Integer || cell.kind == CellValue::Money) &&
        cell.number != std::numeric_limits<qint64>::min())
        cell.number = -cell.number;
    else if (cell.kind == CellValue::Double)
        cell.real = -cell.real;
    return cell;
}

CellValue magnitude(const CellValue& cell)
{
    return cell.isNumeric() && cell.toDouble() < 0 ? negated(cell) : cell;
}

// The totals whose texts are as wide as any group's total of a column can be.
std::vector<CellValue> widestTotals(qint16 aggregate, const Accumulator& all,
                                    const Accumulator& magnitudes)
{
    const CellValue smallest = all.result(AggregateMin);
    const bool anyNegative = smallest.isNumeric() && smallest.toDouble() < 0;
    switch (aggregate) {
    case AggregateSum: {
        const CellValue bound = magnitudes.result(AggregateSum);
        if (anyNegative)
            return {bound, negated(bound)};
        return {bound};
    }
    case AggregatePercent:
        return {magnitudes.result(AggregatePercent, all.sum())};
    case AggregateCount:
        return {all.result(AggregateCount)};
    default:
        return {all.result(aggregate), all.result(AggregateMin), all.result(AggregateMax)};
    }
}

} // namespace

WidestRows::WidestRows(const OutlineGrid& report)
    : m_columns(report.reportColumns()), m_plan(report.groupPlan()),
      m_values(static_cast<size_t>(m_columns.size())), m_all(m_plan.totals.size()),
      m_magnitudes(m_plan.totals.size()), m_longestGroupValues(m_plan.levels.size()),
      m_longestGroupLengths(m_plan.levels.size(), -1)
{
}

void WidestRows::add(const OutlineGrid& grid, qint32 record)
{
    for (size_t i = 0; i < m_values.size(); ++i)
        m_values[i].add(grid.cell(record, m_columns.at(static_cast<qsizetype>(i))));
    for (size_t t = 0; t < m_plan.totals.size(); ++t) {
        const CellValue& cell = grid.cell(record, m_plan.totals[t].column);
        m_all[t].add(cell);
        m_magnitudes[t].add(magnitude(cell));
    }
    for (size_t depth = 0; depth < m_plan.levels.size(); ++depth) {
        QVariant value = grid.value(record, m_plan.levels[depth].column);
        const qsizetype length = value.toString().size();
        if (length > m_longestGroupLengths[depth]) {
            m_longestGroupLengths[depth] = length;
            m_longestGroupValues[depth] = std::move(value);
        }
    }
}

void WidestRows::addAll(const OutlineGrid& grid)
{
    for (qsizetype record = 0; record < grid.recordCount(); ++record)
        add(grid, static_cast<qint32>(record));
}

std::vector<BodyRow> WidestRows::rows(const GridText& text, const StyleTable& styles) const
{
    std::vector<BodyRow> rows;
    for (const qint16 extreme : {AggregateMin, AggregateMax}) {
        QStringList texts;
        for (size_t i = 0; i < m_values.size(); ++i)
            texts.append(text.formattedValue(m_values[i].result(extreme),
                                             m_columns.at(static_cast<qsizetype>(i))));
        rows.push_back(BodyRow{RowKind::Data, StyleDetailBody, texts});
    }
    for (BodyRow& row : groupRows(text, styles))
        rows.push_back(std::move(row));
    return rows;
}

std::vector<BodyRow> WidestRows::groupRows(const GridText& text, const StyleTable& styles) const
{
    std::vector<std::vector<CellValue>> candidates;
    size_t rowCount = 0;
    for (size_t t = 0; t < m_plan.totals.size(); ++t) {
        candidates.push_back(widestTotals(m_plan.totals[t].aggregate, m_all[t], m_magnitudes[t]));
        rowCount = std::max(rowCount, candidates.back().size());
    }

    std::vector<BodyRow> rows;
    for (size_t depth = 0; depth < m_plan.levels.size(); ++depth) {
        const int groupColumn = m_plan.levels[depth].column;
        const QString longest = text.formattedValue(m_longestGroupValues[depth], groupColumn);
        for (const RowKind kind : {RowKind::Opening, RowKind::Closing}) {
            if (!(kind == RowKind::Opening ? m_plan.opening : m_plan.closing))
                continue;
            GridRow row;
            row.kind = kind;
            row.depth = static_cast<quint8>(depth);
            row.level = outlineLevel(kind, static_cast<int>(depth));
            row.style = static_cast<qint16>(StyleForRow(styles, row));
            // A heading row shows its caption alone; closing rows show totals beside it.
            const size_t count = kind == RowKind::Opening ? 1 : std::max<size_t>(rowCount, 1);
            for (size_t k = 0; k < count; ++k) {
                QStringList texts;
                for (int column : m_columns) {
                    QString cell;
                    if (column == groupColumn) {
                        cell = text.caption(row, longest);
                    } else if (kind == RowKind::Closing) {
                        for (size_t t = 0; t < m_plan.totals.size(); ++t) {
                            if (m_plan.totals[t].column == column && k < candidates[t].size())
                                cell = text.totalText(t, candidates[t][k]);
                        }
                    }
                    texts.append(cell);
                }
                rows.push_back(BodyRow{row.kind, paintStyle(row), texts});
            }
        }
    }
    return rows;
}

} // namespace tabulor
