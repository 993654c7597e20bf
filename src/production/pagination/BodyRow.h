#pragma once

#include "definition/ReportDefinition.h"
#include "production/grid/OutlineGrid.h"

#include <QStringList>

namespace tabulor {

// One row of the report body as it is laid out: its kind, the style that paints it and the
// texts of its cells in report column order.
struct BodyRow
{
    RowKind kind = RowKind::Data;
    int style = StyleDetailBody;
    QStringList texts;
};

// The style that paints a grid row: its own, or the detail body's where it has none.
inline int paintStyle(const GridRow& row)
{
    return row.style >= 0 && row.style < kStyleCount ? row.style : int{StyleDetailBody};
}

} // namespace tabulor
