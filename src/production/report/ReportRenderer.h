#pragma once

#include "definition/ReportDefinition.h"
#include "production/grid/OutlineGrid.h"
#include "production/pages/PageDocument.h"
#include "production/report/BodyRows.h"
#include "production/report/Tokens.h"

#include <functional>

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

    // Where warnings about the report go as it is rendered: values of the definition that
    // cannot be laid out (see layoutableDefinition). None are told without one.
    void setWarningHandler(std::function<void(const QString&)> warn) { m_warn = std::move(warn); }

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

    // The definition as it is laid out: values that cannot be are replaced while rendering.
    ReportDefinition m_definition;
    const OutlineGrid& m_grid;
    std::function<void(const QString&)> m_warn;
    TokenContext m_context;
    bool m_hasRows;
};

} // namespace tabulor
