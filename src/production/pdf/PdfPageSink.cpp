#include "production/pdf/PdfPageSink.h"

namespace tabulor {

void PdfPageSink::addPage(PageDisplayList&& page)
{
    m_pageSize = page.size;
    if (m_writer.addPage(page) < 0 && m_error.isEmpty())
        m_error = m_writer.errorString();
}

void PdfPageSink::addOverlay(int page, std::vector<DisplayItem>&& items)
{
    if (!m_writer.addOverlay(page, PageDisplayList{m_pageSize, std::move(items)}) &&
        m_error.isEmpty())
        m_error = m_writer.errorString();
}

} // namespace tabulor
