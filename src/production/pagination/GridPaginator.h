#pragma once

#include "definition/ReportDefinition.h"
#include "production/pages/PageDocument.h"
#include "production/pagination/GridLayout.h"

namespace tabulor {

// Lays body rows out over the document's pages and newspaper columns, from its current
// position on, as they are handed in: each page or column starts with the column title row,
// rows are painted with their style's font, colours, rules and spacing, and breaks follow the
// report's widow control. A run of rows that must stay together but is taller than a whole
// column still breaks. Only the run of rows whose end is not known yet is held back.
class GridPaginator
{
public:
    // Space between newspaper columns, and the most columns a page is divided into.
    static constexpr double kColumnGap = 360;
    static constexpr int kMostColumns = 20;

    // grid gives the report columns.
    GridPaginator(PageDocument& document, const OutlineGrid& grid, const GridLayout& layout,
                  const ReportDefinition& definition);

    // Starts with the title row at the document's current position.
    void begin();
    void add(const BodyRow& row);
    // Lays out the rows held back and leaves the document's position below the last row.
    void finish();

private:
    struct RowBox
    {
        double before;
        double height; // text height
        double after;
        double total() const { return before + height + after; }
    };
    struct LaidOut
    {
        RowKind kind;
        int style;
        RowLines lines;
        RowBox box;
    };

    // Lays out the run of rows that belongs together: it goes to the next column when it does
    // not fit here but would fit there.
    void layOutRun();

    void startSegment(bool newPage);
    void paintRow(int style, const RowLines& lines, const RowBox& box);
    void paintBorders();
    double left() const;

    PageDocument& m_document;
    const GridLayout& m_layout;
    const ReportDefinition& m_definition;
    std::vector<qint16> m_alignments; // per report column
    int m_columns = 1;
    double m_columnWidth = 0;
    int m_column = 0; // newspaper column in use
    double m_segmentTop = 0;
    double m_y = 0;
    bool m_segmentHasRows = false;
    bool m_widowControl = false;
    double m_bottom = 0;
    double m_segmentRoom = 0; // what a fresh page or column holds below its title row
    std::vector<LaidOut> m_run;
    double m_runHeight = 0;
};

} // namespace tabulor
