#include "production/grid/ReportGridBuilder.h"

#include "production/grid/Aggregate.h"
#include "production/grid/GroupedRows.h"
#include "production/grid/RecordOrder.h"

namespace tabulor {

namespace {

constexpr qint16 kDefaultAlignment = 9;
const QString kGroupValue = QStringLiteral("%s");

QList<int> reportColumnsOf(const OutlineGrid& grid, const ReportDefinition& d, int* groupCount)
{
    QList<int> columns;
    for (const QString& name : d.groups) {
        const int c = grid.FindGridColumn(name);
        if (c >= 0)
            columns.append(c);
    }
    *groupCount = static_cast<int>(columns.size());
    for (const QString& name : d.details) {
        const int c = grid.FindGridColumn(name);
        if (c >= 0)
            columns.append(c);
    }
    return columns;
}

void applyFieldSettings(OutlineGrid& grid, const QList<ReportField>& fields)
{
    for (int c = 0; c < grid.columnCount(); ++c) {
        GridColumn& column = grid.column(c);
        const int f = FindField(fields, column.title);
        if (f < 0)
            continue;
        const ReportField& field = fields.at(f);
        column.sort = field.Sort;
        column.format = field.Format;
        column.alignment =
            field.Align == kDefaultAlignment ? AlignmentForFieldType(column.type) : field.Align;
    }
}

GroupPlan groupPlan(const OutlineGrid& grid, const ReportDefinition& d, const QList<int>& columns,
                    int groupCount)
{
    GroupPlan plan;
    const qint32 position = d.global.SubtotalPosition;
    plan.closing = position == 1 || position == 2;
    plan.opening = position == 0 || position == 2;
    for (int level = 0; level < groupCount; ++level) {
        const int column = columns.at(level);
        const int f = FindField(d.fields, grid.column(column).title);
        QString closing = kGroupValue;
        if (f >= 0 && d.fields.at(f).Title != d.fields.at(f).ID)
            closing = d.fields.at(f).Title;
        plan.levels.push_back(GroupLevel{column, kGroupValue, closing});
    }
    if (!plan.closing)
        return plan;
    for (int i = groupCount; i < columns.size(); ++i) {
        const int f = FindField(d.fields, grid.column(columns.at(i)).title);
        if (f >= 0 && d.fields.at(f).Aggregate > 0)
            plan.totals.push_back(TotalColumn{columns.at(i), d.fields.at(f).Aggregate});
    }
    return plan;
}

std::vector<double> grandTotals(const OutlineGrid& grid, const GroupPlan& plan)
{
    std::vector<double> totals(plan.totals.size(), 0.0);
    for (size_t t = 0; t < plan.totals.size(); ++t) {
        if (plan.totals[t].aggregate != AggregatePercent)
            continue;
        Accumulator all;
        for (qsizetype r = 0; r < grid.recordCount(); ++r)
            all.add(grid.cell(r, plan.totals[t].column));
        totals[t] = all.sum();
    }
    return totals;
}

} // namespace

int FindField(const QList<ReportField>& fields, const QString& name)
{
    if (name.isEmpty())
        return 0;
    for (int i = 0; i < fields.size(); ++i) {
        if (fields.at(i).ID == name)
            return i;
    }
    return -1;
}

int StyleForRow(const StyleTable& styles, const QString& name)
{
    if (name.isEmpty())
        return 0;
    for (int i = 0; i < kStyleCount; ++i) {
        if (styles[i].name == name)
            return i;
    }
    return -1;
}

int StyleForRow(const StyleTable& styles, const GridRow& row)
{
    if (!row.isGroupRow())
        return StyleDetailBody;
    for (int i = 0; i < kStyleCount; ++i) {
        if (styles[i].Level == row.level)
            return i;
    }
    return -1;
}

QList<SortKey> reportSortKeys(const OutlineGrid& grid)
{
    QList<SortKey> keys;
    for (int c : grid.reportColumns()) {
        const qint16 sort = grid.column(c).sort;
        if (sort == 1 || sort == 2)
            keys.append(SortKey{c, sort == 2});
    }
    return keys;
}

void buildReportGrid(OutlineGrid& grid, const ReportDefinition& d, const QCollator& collator)
{
    int groupCount = 0;
    const QList<int> columns = reportColumnsOf(grid, d, &groupCount);
    grid.setReportColumns(columns);
    applyFieldSettings(grid, d.fields);

    const std::vector<qint32> order = sortedRecords(grid, reportSortKeys(grid), collator);

    grid.setGroupPlan(groupPlan(grid, d, columns, groupCount));
    std::vector<GridRow>& rows = grid.rows();
    rows.clear();
    rows.reserve(order.size());
    grid.totalValues().clear();
    GroupedRows grouped(grid, grandTotals(grid, grid.groupPlan()));
    for (qint32 record : order)
        grouped.add(record);
    grouped.finish();

    for (GridRow& row : rows)
        row.style = static_cast<qint16>(StyleForRow(d.styles, row));
}

} // namespace tabulor
