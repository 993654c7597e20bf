#pragma once

#include "definition/ReportDefinition.h"
#include "production/grid/OutlineGrid.h"
#include "production/pages/PageDocument.h"
#include "production/report/BodyRows.h"
#include "production/report/Tokens.h"

namespace tabulor {

// Renders a report into a page document: the page set up from the definition, the report
// title, the body rows over as many pages as they need, and, once the document is complete,
// the page header and footer on every page with the final page count, when the document asks
// for them (PageDocument::OverlayHeadersAndFooters).
class ReportRenderer
{
public:
    // grid gives the report columns and the body rows of a report built in memory. context
    // gives the names and the clock the tokens stand for; its page count is taken from the
    // document as it goes.
    ReportRenderer(const ReportDefinition& definition, const OutlineGrid& grid,
                   TokenContext context);

    // Renders the rows of the grid.
    void RenderReport(PageDocument& document);
    // Renders rows that come from elsewhere, shown in the grid's report columns.
    void RenderReport(PageDocument& document, BodyRows& rows);
    // Draws the page header and footer on every page of a finished document.
    void OverlayHeadersAndFooters(PageDocument& document);

private:
    void useStyle(PageDocument& document, int style) const;
    void drawHeaderLine(PageDocument& document, const QString& expanded, int page, int style,
                        bool header) const;

    const ReportDefinition& m_definition;
    const OutlineGrid& m_grid;
    TokenContext m_context;
    bool m_hasRows;
};

} // namespace tabulor
