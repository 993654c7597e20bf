#include "production/report/ReportColumns.h"

#include "production/pagination/GridLayout.h"

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
    return GridLayout(grid, GridLayout::rowsToFit(grid, text, definition.styles), definition, fonts)
        .columnWidths();
}

} // namespace tabulor
