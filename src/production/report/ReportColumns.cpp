#include "production/report/ReportColumns.h"

#include "production/grid/GridText.h"
#include "production/pagination/GridLayout.h"

#include <algorithm>

namespace tabulor {

void applyPageSettings(PageSetup& setup, const GlobalSettings& settings)
{
    setup.orientation = settings.Orientation;
    setup.columns = std::max(1, static_cast<int>(settings.Columns.toDouble()));
    setup.pageBorder = settings.PageBorders;
    setup.marginTop = settings.Top;
    setup.marginBottom = settings.Bottom;
    setup.marginLeft = settings.Left;
    setup.marginRight = settings.Right;
}

std::vector<double> reportColumnWidths(const OutlineGrid& grid, const ReportDefinition& definition,
                                       const FontCatalog& fonts, FormatLocale locale)
{
    const GridText text(grid, locale);
    std::vector<BodyRow> fitRows;
    const size_t count = std::min(grid.rows().size(), static_cast<size_t>(GridLayout::kFitRows));
    fitRows.reserve(count);
    for (size_t r = 0; r < count; ++r) {
        const GridRow& row = grid.rows()[r];
        fitRows.push_back(BodyRow{row.kind, paintStyle(row), text.rowTexts(row)});
    }
    return GridLayout(grid, fitRows, definition, fonts).columnWidths();
}

} // namespace tabulor
