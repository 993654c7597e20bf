#include "production/PdfPageSink.h"

namespace tabulor {

void PdfPageSink::addPage(PageDisplayList&& page)
{
    m_pageSize = page.size;
    m_writer.addPage(page);
}

void PdfPageSink::addOverlay(int page, std::vector<DisplayItem>&& items)
{
    // A refused overlay shows in the writer's error, which finishing reports.
    (void)m_writer.addOverlay(page, PageDisplayList{m_pageSize, std::move(items)});
}

} // namespace tabulor
