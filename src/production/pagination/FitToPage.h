#pragma once

#include <optional>
#include <vector>

namespace tabulor {

// Fits the widths of a report's columns (twips, in report order) into the printable width:
// the new widths, or nothing when the report is left as it is.
//
// The widest column is found first; when that is the first column, nothing changes. A widest
// column over four inches alone gives up the excess, but when the excess is less than a tenth
// of its width, it gives up that tenth instead. Otherwise every column of positive width is
// scaled by the printable width over the total, to whole twips. A report that already fits is
// left alone, and the widest column is never narrowed below kNarrowest: where it would be, every
// column is scaled instead.
std::optional<std::vector<double>> fitColumnsToPage(const std::vector<double>& widths,
                                                    double printableWidth);

// The narrowest a column is made by giving up the excess (a quarter of an inch).
inline constexpr double kNarrowestFittedColumn = 360;

} // namespace tabulor
