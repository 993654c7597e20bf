#pragma once

#include "production/base/BoundedQueue.h"
#include "production/pages/PageSink.h"

#include <thread>
#include <variant>

namespace tabulor {

// Hands pages on to another sink on a thread of its own, so that writing a page (encoding its
// text, say) goes on beside the layout of the next one. The other sink sees the pages and
// overlays in the order they were given, all on that one thread; it may be looked at again
// once finish() has returned.
class BackgroundPageSink : public PageSink
{
public:
    explicit BackgroundPageSink(PageSink& target);
    ~BackgroundPageSink() override; // finishes
    BackgroundPageSink(const BackgroundPageSink&) = delete;
    BackgroundPageSink& operator=(const BackgroundPageSink&) = delete;

    void addPage(PageDisplayList&& page) override;
    void addOverlay(int page, std::vector<DisplayItem>&& items) override;
    // Waits until the other sink has everything given so far.
    void finish();

private:
    struct Overlay
    {
        int page;
        std::vector<DisplayItem> items;
    };
    using Work = std::variant<PageDisplayList, Overlay>;
    // Pages laid out ahead of the writing: enough to keep both threads busy.
    static constexpr size_t kPagesAhead = 4;

    PageSink& m_target;
    BoundedQueue<Work> m_queue{kPagesAhead};
    std::thread m_thread;
};

} // namespace tabulor
