#pragma once

#include "definition/ReportStyle.h"
#include "production/formats/FormatLocale.h"
#include "production/grid/OutlineGrid.h"
#include "production/report/BodyRows.h"

namespace tabulor {

// The body rows of a report grid built in memory, with the widest rows of its records to fit.
class GridBodyRows final : public BodyRows
{
public:
    // styles paint the report's rows.
    GridBodyRows(const OutlineGrid& grid, const StyleTable& styles, FormatLocale locale);

    bool empty() const override { return m_grid.rows().empty(); }
    std::vector<BodyRow> laterRowsToFit() const override;
    void writeTo(ReportBody& body) override;

private:
    const OutlineGrid& m_grid;
    const StyleTable& m_styles;
    FormatLocale m_locale;
};

} // namespace tabulor
