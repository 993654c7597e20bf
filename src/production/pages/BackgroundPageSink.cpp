#include "production/pages/BackgroundPageSink.h"

#include <pthread.h>

namespace tabulor {

BackgroundPageSink::BackgroundPageSink(PageSink& target) : m_target(target)
{
    m_thread = std::thread([this] {
        pthread_setname_np(pthread_self(), "tabulor-pages");
        while (std::optional<Work> work = m_queue.pop()) {
            if (auto* page = std::get_if<PageDisplayList>(&*work)) {
                m_target.addPage(std::move(*page));
            } else {
                Overlay& overlay = std::get<Overlay>(*work);
                m_target.addOverlay(overlay.page, std::move(overlay.items));
            }
        }
    });
}

BackgroundPageSink::~BackgroundPageSink()
{
    finish();
}

void BackgroundPageSink::addPage(PageDisplayList&& page)
{
    m_queue.push(std::move(page));
}

void BackgroundPageSink::addOverlay(int page, std::vector<DisplayItem>&& items)
{
    m_queue.push(Overlay{page, std::move(items)});
}

void BackgroundPageSink::finish()
{
    if (!m_thread.joinable())
        return;
    m_queue.close();
    m_thread.join();
}

} // namespace tabulor
