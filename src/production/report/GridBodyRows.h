#pragma once

#include "production/formats/FormatLocale.h"
#include "production/grid/OutlineGrid.h"
#include "production/report/BodyRows.h"

namespace tabulor {

// The body rows of a report grid built in memory.
class GridBodyRows final : public BodyRows
{
public:
    GridBodyRows(const OutlineGrid& grid, FormatLocale locale);

    bool empty() const override { return m_grid.rows().empty(); }
    void writeTo(ReportBody& body) override;

private:
    const OutlineGrid& m_grid;
    FormatLocale m_locale;
};

} // namespace tabulor
