#pragma once

#include "definition/ReportDefinition.h"
#include "production/GridLayout.h"
#include "production/PageDocument.h"

namespace tabulor {

// Lays the rows of a built report grid out over the document's pages and newspaper columns,
// from its current position on: each page or column starts with the column title row, rows
// are painted with their style's font, colours, rules and spacing, and breaks follow the
// report's widow control. A run of rows that must stay together but is taller than a whole
// column still breaks.
class GridPaginator
{
public:
    // Space between newspaper columns.
    static constexpr double kColumnGap = 360;

    GridPaginator(PageDocument& document, const OutlineGrid& grid, const GridLayout& layout,
                  const ReportDefinition& definition);

    void render();

private:
    struct RowBox
    {
        double before;
        double height; // text height
        double after;
        double total() const { return before + height + after; }
    };

    void startSegment(bool newPage);
    void paintRow(int style, const std::vector<QStringList>& lines, const RowBox& box);
    void paintBorders();
    double left() const;

    PageDocument& m_document;
    const OutlineGrid& m_grid;
    const GridLayout& m_layout;
    const ReportDefinition& m_definition;
    std::vector<qint16> m_alignments; // per report column
    int m_columns = 1;
    double m_columnWidth = 0;
    int m_column = 0; // newspaper column in use
    double m_segmentTop = 0;
    double m_y = 0;
    bool m_segmentHasRows = false;
};

} // namespace tabulor
