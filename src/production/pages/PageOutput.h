#pragma once

#include "production/pages/DisplayList.h"
#include "production/pages/FontCatalog.h"

#include <QString>

#include <vector>

namespace tabulor {

// Writes pages to a PDF file through the painter, with the title in the document's
// information. The file is replaced only when the whole document was written.
[[nodiscard]] bool writePainterPdf(const std::vector<PageDisplayList>& pages, const QString& path,
                                   const QString& title, const FontCatalog& fonts, QString* error);

// Writes pages as PNG images at a resolution: pattern holds "%d" for the page number (1-based).
// firstPage and lastPage choose the pages (1-based, inclusive).
[[nodiscard]] bool writePng(const std::vector<PageDisplayList>& pages, const QString& pattern,
                            int dotsPerInch, int firstPage, int lastPage, const FontCatalog& fonts,
                            QString* error);

// The image of one page at a resolution, on white.
QImage pageImage(const PageDisplayList& page, int dotsPerInch, const FontCatalog& fonts);

} // namespace tabulor
