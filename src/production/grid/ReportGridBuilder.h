#pragma once

#include "definition/ReportDefinition.h"
#include "production/grid/OutlineGrid.h"
#include "production/grid/RecordOrder.h"

#include <QCollator>

namespace tabulor {

// The index of the field named name in the field table, or -1. An empty name gives entry 0.
int FindField(const QList<ReportField>& fields, const QString& name);

// The style with the given name ("" gives 0), or -1.
int StyleForRow(const StyleTable& styles, const QString& name);
// The style of a body row: Detail Body for records, the style whose level matches for group
// rows, -1 when none does (group levels beyond the third).
int StyleForRow(const StyleTable& styles, const GridRow& row);

// The sort of a built report: its report columns that sort, in report order.
QList<SortKey> reportSortKeys(const OutlineGrid& grid);

// Shapes the grid into the report the definition describes: the group and detail columns in
// their order with each field's sort, format and alignment, the records sorted, group heading
// and closing rows with the fields' subtotals, and each row's style.
void buildReportGrid(OutlineGrid& grid, const ReportDefinition& definition,
                     const QCollator& collator);

} // namespace tabulor
