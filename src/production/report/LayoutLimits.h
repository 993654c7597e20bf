#pragma once

#include "definition/ReportDefinition.h"

#include <QSizeF>
#include <QString>

#include <functional>

namespace tabulor {

// The least room that margins leave across and down the page (one inch), and the narrowest a
// newspaper column is made.
inline constexpr double kSmallestPrintableSpan = 1440;
inline constexpr double kNarrowestNewspaperColumn = 720;
// The largest font size a style is drawn with, in points.
inline constexpr double kLargestFontSize = 1638;

// The definition as it can be laid out on a page of pageSize (twips, turned as the report turns
// it): negative spacing and margins become 0; margins that leave less than
// kSmallestPrintableSpan across or down the page shrink in proportion until they do; a font
// size outside 1 to kLargestFontSize points, and Columns outside 1 to as many newspaper columns
// as fit (GridPaginator::kMostColumns at most), become the nearest that can be drawn. Every
// value changed is told through warn, naming its section and key, the value and what is used
// instead. The definition itself stays as it is.
ReportDefinition layoutableDefinition(const ReportDefinition& definition, QSizeF pageSize,
                                      const std::function<void(const QString&)>& warn);

} // namespace tabulor
