#pragma once

#include "production/pages/DisplayList.h"

#include <QString>

#include <memory>

namespace tabulor {

// Writes pages to a PDF file as they come, so that memory stays the same for ten pages or a
// hundred thousand: each page's content is written by addPage() and can then be dropped. Text
// is shaped with HarfBuzz and drawn with subsets of the installed fonts, embedded with the
// text each glyph stands for.
//
// Lines that need the final page count ("Page 3 of 120") are added afterwards as an overlay
// of an already written page. The file appears at its path only when finish() succeeds; until
// then, and after any failure, a file already there stays as it was.
class PdfWriter
{
public:
    PdfWriter();
    ~PdfWriter(); // without finish(), the document is discarded
    PdfWriter(const PdfWriter&) = delete;
    PdfWriter& operator=(const PdfWriter&) = delete;

    // Once per writer.
    [[nodiscard]] bool open(const QString& path, QString* error);
    // The document title (the report's file name), shown by viewers.
    void begin(const QString& title);
    // Writes a page and returns its index (from 0); -1 when writing has failed or for a page
    // of no size or more than 200 inches a side, which is left out.
    int addPage(const PageDisplayList& page);
    // Draws overlay over a page already added, once per page. False for a page that does not
    // exist or has its overlay already.
    [[nodiscard]] bool addOverlay(int page, const PageDisplayList& overlay);
    // Writes the fonts and the page tree and puts the file in place.
    [[nodiscard]] bool finish(QString* error);

    int pageCount() const;
    // Why writing failed, or why the last page or overlay was refused.
    QString errorString() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace tabulor
