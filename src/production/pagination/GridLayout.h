#pragma once

#include "definition/ReportDefinition.h"
#include "production/grid/GridText.h"
#include "production/pages/FontCatalog.h"
#include "production/pages/TextMeasure.h"
#include "production/pagination/BodyRow.h"

#include <QVarLengthArray>

#include <array>
#include <memory>
#include <vector>

namespace tabulor {

// The lines of a row's cells, one cell after another.
struct RowLines
{
    QStringList lines;
    QVarLengthArray<qsizetype, 16> counts; // per cell

    // The lines of cell c.
    QStringList cell(qsizetype c) const;
    qsizetype most() const;
};

// The sizes of a report's rows in twips: the width of each report column, fitted to the rows
// to fit unless the column has a stored width, and the lines and height of each row, from the
// texts measured in their style's font, wrapped when the report allows it and capped at its
// maximum row height.
class GridLayout
{
public:
    // Space between a cell's text and its left and right edges.
    static constexpr double kCellPadding = 60;
    // A column that fits its content grows no wider than this (four inches).
    static constexpr double kMaxFitWidth = 5760;
    // How many body rows a fitting column measures: those of the designer's working view.
    static constexpr qsizetype kFitRows = 250;

    // grid gives the report columns; a fitting column is as wide as the widest of its texts
    // in fitRows (see rowsToFit).
    GridLayout(const OutlineGrid& grid, const std::vector<BodyRow>& fitRows,
               const ReportDefinition& definition, const FontCatalog& fonts);

    // Per report column, in report order.
    const std::vector<double>& columnWidths() const { return m_widths; }
    double totalWidth() const;

    // The title row: each column's title.
    QStringList titles() const;
    RowLines titleLines() const;
    double titleHeight() const;

    // The lines each report column shows for a row of these texts painted in style.
    RowLines linesOf(const QStringList& texts, int style) const;
    // The height of a row of cells with these lines, painted in style, without the style's
    // space before and after it.
    double heightOf(const RowLines& lines, int style) const;

    const TextMeasure& measure(int style) const { return *m_measures[static_cast<size_t>(style)]; }

    // The rows that fitting columns measure for a report built in grid: its first kFitRows
    // body rows, and the widest rows of all its records (WidestRows).
    static std::vector<BodyRow> rowsToFit(const OutlineGrid& grid, const GridText& text,
                                          const StyleTable& styles);

private:
    const OutlineGrid& m_grid;
    const ReportDefinition& m_definition;
    std::array<std::unique_ptr<TextMeasure>, kStyleCount> m_measures;
    std::vector<double> m_widths;
};

} // namespace tabulor
