#pragma once

#include "production/pages/PageSink.h"
#include "production/pdf/PdfWriter.h"

namespace tabulor {

// Streams a document's pages into a PDF file as soon as they are laid out, and their header
// and footer overlays at the end.
class PdfPageSink : public PageSink
{
public:
    explicit PdfPageSink(PdfWriter& writer) : m_writer(writer) {}

    void addPage(PageDisplayList&& page) override;
    void addOverlay(int page, std::vector<DisplayItem>&& items) override;

    // Why a page or an overlay was refused; empty when none was.
    const QString& error() const { return m_error; }

private:
    PdfWriter& m_writer;
    QSizeF m_pageSize;
    QString m_error;
};

} // namespace tabulor
