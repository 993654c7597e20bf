#include "production/report/ReportRenderer.h"

#include "production/report/GridBodyRows.h"
#include "production/report/LayoutLimits.h"
#include "production/report/ReportColumns.h"
#include "production/richtext/RtfReader.h"

namespace tabulor {

namespace {

// How far the header and footer stand outside the top and bottom margins.
constexpr double kHeaderGap = 150;

} // namespace

ReportRenderer::ReportRenderer(const ReportDefinition& definition, const OutlineGrid& grid,
                               TokenContext context)
    : m_definition(definition), m_grid(grid), m_context(std::move(context)),
      m_hasRows(!grid.rows().empty())
{
}

void ReportRenderer::useStyle(PageDocument& document, int style) const
{
    const ReportStyle& s = m_definition.styles[style];
    document.font = FontCatalog::fontSpec(s);
    document.TextColor = FontCatalog::colour(s.Text);
}

void ReportRenderer::RenderReport(PageDocument& document)
{
    GridBodyRows rows(m_grid, m_definition.styles, m_context.locale);
    RenderReport(document, rows);
}

void ReportRenderer::RenderReport(PageDocument& document, BodyRows& rows)
{
    // The header and footer need the final page count: they are drawn as the document ends,
    // after whatever else watches its end has run.
    const PageHook overlay = document.addEndDocHook([this](PageDocument& d) {
        if (d.OverlayHeadersAndFooters)
            OverlayHeadersAndFooters(d);
    });
    document.setWarningHandler(m_warn);
    PageSetup oriented = document.setup();
    oriented.orientation = m_definition.global.Orientation;
    m_definition = layoutableDefinition(m_definition, oriented.pageSize(), m_warn);
    const GlobalSettings& g = m_definition.global;
    m_hasRows = !rows.empty();
    if (!m_hasRows && document.keepsPages()) {
        // Nothing to show: what the document showed before goes. Pages that went to a sink
        // are gone already, and an empty one sent now would stand before the report.
        document.StartDoc();
        document.EndDoc();
    }
    applyPageSettings(document.setup(), g);
    document.FileName = FileNameOnly(m_context.reportFileName);
    document.StartDoc();

    if (!g.ReportTitle.isEmpty()) {
        const ReportStyle& title = m_definition.styles[StyleReportTitle];
        useStyle(document, StyleReportTitle);
        document.setCurrentY(document.CurrentY() + title.Before);
        document.TextAlign = g.Align;
        TokenContext now = m_context;
        now.pageCount = document.PageCount();
        const QString text = ExpandTokens(g.ReportTitle, now);
        if (text.startsWith(u'{'))
            document.TextRTF(readRtf(text));
        else
            document.Paragraph(text);
        document.setCurrentY(document.CurrentY() + title.After);
        document.TextAlign = 0;
    }

    ReportBody body(document, m_grid, m_definition, rows.laterRowsToFit());
    rows.writeTo(body);
    body.finish();
    document.EndDoc();
    document.setWarningHandler(nullptr);
}

void ReportRenderer::OverlayHeadersAndFooters(PageDocument& document)
{
    if (!m_hasRows)
        return;
    TokenContext final = m_context;
    final.pageCount = document.PageCount();
    const QString header = ExpandTokens(m_definition.global.Header, final);
    const QString footer = ExpandTokens(m_definition.global.Footer, final);
    for (int page = 1; page <= document.PageCount(); ++page) {
        document.StartOverlay(page);
        if (!header.isEmpty())
            drawHeaderLine(document, header, page, StyleHeaders, true);
        if (!footer.isEmpty())
            drawHeaderLine(document, footer, page, StyleFooters, false);
        document.EndOverlay();
    }
    document.TextAlign = 0;
    useStyle(document, StyleDetailBody);
}

void ReportRenderer::drawHeaderLine(PageDocument& document, const QString& expanded, int page,
                                    int style, bool header) const
{
    useStyle(document, style);
    const PageSetup& setup = document.setup();
    const double left = setup.marginLeft;
    const double width = setup.printableWidth();
    const double top =
        header ? setup.marginTop - kHeaderGap - document.TextHeight(QStringLiteral("Hj"))
               : setup.pageSize().height() - setup.marginBottom + kHeaderGap;
    const QStringList parts = headerParts(expanded, page);
    for (int k = 0; k < parts.size(); ++k) {
        if (parts.at(k).isEmpty())
            continue;
        document.TextAlign = k;
        document.TextBox(parts.at(k), left, top, width, 0);
    }
}

} // namespace tabulor
