#include "production/report/GridBodyRows.h"

#include "production/grid/GridText.h"
#include "production/pagination/WidestRows.h"

namespace tabulor {

GridBodyRows::GridBodyRows(const OutlineGrid& grid, const StyleTable& styles, FormatLocale locale)
    : m_grid(grid), m_styles(styles), m_locale(std::move(locale))
{
}

std::vector<BodyRow> GridBodyRows::laterRowsToFit() const
{
    WidestRows widest(m_grid);
    widest.addAll(m_grid);
    return widest.rows(GridText(m_grid, m_locale), m_styles);
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
