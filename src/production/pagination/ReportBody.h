#pragma once

#include "definition/ReportDefinition.h"
#include "production/pages/PageDocument.h"
#include "production/pagination/BodyRow.h"
#include "production/pagination/GridLayout.h"
#include "production/pagination/GridPaginator.h"

#include <optional>
#include <vector>

namespace tabulor {

// Takes the body rows of a report in order and lays them out on the document's pages. The
// first rows fit the widths of the columns, together with the later rows they must hold, so
// they are held until there are enough of them or the rows end; from then on each row goes
// onto the pages as it comes.
class ReportBody
{
public:
    // grid gives the report columns; the widths of the columns fit the first rows added and
    // laterRowsToFit besides.
    ReportBody(PageDocument& document, const OutlineGrid& grid, const ReportDefinition& definition,
               std::vector<BodyRow> laterRowsToFit);

    // Whether the document was stopped: the rows still to come are not wanted.
    bool stopped() const { return m_document.stopped(); }
    void add(BodyRow row);
    void finish();

private:
    void start();

    PageDocument& m_document;
    const OutlineGrid& m_grid;
    const ReportDefinition& m_definition;
    std::vector<BodyRow> m_fitRows;
    std::vector<BodyRow> m_laterRowsToFit;
    std::optional<GridLayout> m_layout;
    std::optional<GridPaginator> m_paginator;
};

} // namespace tabulor
