#include "production/pagination/FitToPage.h"

#include <cmath>
#include <numeric>

namespace tabulor {

namespace {

// A column wider than this gives up the excess alone.
constexpr double kWideColumn = 5760;

} // namespace

std::optional<std::vector<double>> fitColumnsToPage(const std::vector<double>& widths,
                                                    double printableWidth)
{
    const double available = std::trunc(printableWidth);
    const double total = std::accumulate(widths.begin(), widths.end(), 0.0);
    if (widths.empty() || total <= available || available <= 0)
        return std::nullopt;

    size_t widest = 0;
    double widestWidth = 0;
    for (size_t c = 0; c < widths.size(); ++c) {
        if (widths[c] > widestWidth || widestWidth == 0) {
            widest = c;
            widestWidth = widths[c];
        }
    }
    if (widest == 0)
        return std::nullopt;

    std::vector<double> fitted = widths;
    if (widestWidth > kWideColumn) {
        const double excess = total - available;
        const double tenth = 0.1 * widestWidth;
        const double narrowed = tenth > excess ? widestWidth - tenth : widestWidth - excess;
        if (narrowed >= kNarrowestFittedColumn) {
            fitted[widest] = narrowed;
            return fitted;
        }
    }
    for (double& width : fitted) {
        if (width > 0)
            width = std::trunc(width * available / total);
    }
    return fitted;
}

} // namespace tabulor
