#pragma once

#include "production/PageSink.h"
#include "production/PdfWriter.h"

namespace tabulor {

// Streams a document's pages into a PDF file as soon as they are laid out, and their header
// and footer overlays at the end.
class PdfPageSink : public PageSink
{
public:
    explicit PdfPageSink(PdfWriter& writer) : m_writer(writer) {}

    void addPage(PageDisplayList&& page) override;
    void addOverlay(int page, std::vector<DisplayItem>&& items) override;

private:
    PdfWriter& m_writer;
    QSizeF m_pageSize;
};

} // namespace tabulor
