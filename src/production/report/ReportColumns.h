#pragma once

#include "definition/ReportDefinition.h"
#include "production/formats/FormatLocale.h"
#include "production/grid/OutlineGrid.h"
#include "production/pages/PageSetup.h"

#include <vector>

namespace tabulor {

class FontCatalog;

// The page as a report's settings set it up: orientation, newspaper columns, page border and
// margins; the paper stays as it is.
void applyPageSettings(PageSetup& setup, const GlobalSettings& settings);

// The widths (twips, in report column order) that a report built in grid is laid out with:
// a column's stored width, or the width that fits its title and its rows to fit.
std::vector<double> reportColumnWidths(const OutlineGrid& grid, const ReportDefinition& definition,
                                       const FontCatalog& fonts, FormatLocale locale);

} // namespace tabulor
