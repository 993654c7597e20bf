#include "production/report/GridBodyRows.h"

#include "production/grid/GridText.h"

namespace tabulor {

GridBodyRows::GridBodyRows(const OutlineGrid& grid, FormatLocale locale)
    : m_grid(grid), m_locale(std::move(locale))
{
}

void GridBodyRows::writeTo(ReportBody& body)
{
    const GridText text(m_grid, m_locale);
    for (const GridRow& row : m_grid.rows()) {
        if (body.stopped())
            return;
        body.add(BodyRow{row.kind, paintStyle(row), text.rowTexts(row)});
    }
}

} // namespace tabulor
