#pragma once

#include "production/base/Export.h"
#include "production/pages/DisplayList.h"
#include "production/pages/PageHooks.h"
#include "production/pages/PageSetup.h"
#include "production/pages/PageSink.h"

#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace tabulor {

class FontCatalog;
class MissingGlyphs;
class TextMeasure;
struct RichText;

// A document of pages, written from the top down: text, paragraphs and boxes in the current
// font and alignment, with a current vertical position that moves on to a new page when the
// page is full. Each page is recorded as a display list. Pages stay in the document for the
// preview, or go to a sink as soon as they are complete.
class TABULOR_EXPORT PageDocument
{
public:
    PageDocument();
    virtual ~PageDocument();

    PageSetup& setup() { return m_setup; }
    const PageSetup& setup() const { return m_setup; }

    // The report file the document shows; outputs use it as the document's title.
    QString FileName;

    // The font and colour of what is drawn next.
    FontSpec font;
    QColor TextColor = Qt::black;
    // 0 left, 1 centre, 2 right.
    int TextAlign = 0;

    // Pages go to sink instead of staying here (null: they stay).
    void setSink(PageSink* sink) { m_sink = sink; }
    bool keepsPages() const { return m_sink == nullptr; }

    // Whether the page header and footer of a report are drawn on this document. The designer's
    // own document always has them; a host's document only when it asks.
    bool OverlayHeadersAndFooters = false;

    void StartDoc();
    void EndDoc();
    // Drops everything: no pages.
    void KillDoc();
    bool inDocument() const { return m_open; }

    int PageCount() const { return m_pageCount; }
    double CurrentY() const { return m_currentY; }
    void setCurrentY(double y) { m_currentY = y; }
    // Moves on to a new page.
    void NewPage();

    // Text wrapped in the printable width, at the current position, which moves below it.
    void Paragraph(const QString& text);
    // Rich text in the printable width at the current position, which moves below it; what
    // its formats leave unset comes from the current font and colour.
    void TextRTF(const RichText& text);
    // Text in a box, aligned in its width; a height of 0 takes what the text needs. The
    // current position does not move.
    void TextBox(const QString& text, double left, double top, double width, double height);
    double TextHeight(const QString& text) const;

    // Draws on page n (1-based) after it is complete, until EndOverlay.
    void StartOverlay(int page);
    void EndOverlay();

    // Items drawn directly; they go to the page being written or the overlay.
    void draw(DisplayItem item);
    const TextMeasure& measure(const FontSpec& fontSpec) const;

    // Hooks called when a new page begins and when the document ends, in the order they were
    // added, each for as long as the handle returned is kept. A page hook may stop the
    // document; it ends then with the pages made so far.
    using Hook = std::function<void(PageDocument&)>;
    [[nodiscard]] PageHook addNewPageHook(Hook hook);
    [[nodiscard]] PageHook addEndDocHook(Hook hook);
    void stop() { m_stopped = true; }
    bool stopped() const { return m_stopped; }
    // The error that stopped the document, if any (0: none).
    int Error = 0;

    // The pages kept in the document (none when they went to a sink).
    const std::vector<PageDisplayList>& pages() const { return m_pages; }

    const FontCatalog& fonts() const { return *m_fonts; }

    // Where notes on what is drawn go: a face that is not installed, once per face, with the
    // one used instead, and characters that no installed font has, once per script. None are
    // looked for without a handler.
    void setWarningHandler(std::function<void(const QString&)> warn) { m_warn = std::move(warn); }

private:
    void checkFonts(const TextRun& run);
    void beginPage();
    void finishPage();
    std::vector<DisplayItem>& target();
    void drawLines(const QStringList& lines, double left, double top, double width);

    PageSetup m_setup;
    std::unique_ptr<FontCatalog> m_fonts;
    mutable std::vector<std::pair<FontSpec, std::unique_ptr<TextMeasure>>> m_measures;
    PageSink* m_sink = nullptr;
    std::vector<PageDisplayList> m_pages;
    PageDisplayList m_current;
    size_t m_lastPageItems = 0;
    int m_pageCount = 0;
    double m_currentY = 0;
    bool m_open = false;
    bool m_stopped = false;
    int m_overlayPage = 0; // 1-based; 0 when not overlaying
    std::vector<DisplayItem> m_overlay;
    std::shared_ptr<PageHooks> m_newPageHooks;
    std::shared_ptr<PageHooks> m_endDocHooks;
    std::function<void(const QString&)> m_warn;
    QSet<QString> m_checkedFaces;
    std::unique_ptr<MissingGlyphs> m_missingGlyphs; // made when first needed
};

} // namespace tabulor
