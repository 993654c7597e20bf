#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

namespace tabulor {

// Hands items from one producing thread to one consuming thread, holding at most `capacity`
// of them, so that a producer that runs ahead waits instead of filling memory. Either side
// may end it: the producer closes it when it has no more, the consumer cancels it when it
// wants no more.
template <typename T> class BoundedQueue
{
public:
    explicit BoundedQueue(size_t capacity)
        : m_capacity(std::max<size_t>(capacity, 1)), m_batch(std::max<size_t>(m_capacity / 2, 1))
    {
    }

    // Waits for room; false when the consumer cancelled.
    bool push(T item)
    {
        std::unique_lock lock(m_mutex);
        if (m_items.size() >= m_capacity) {
            m_changed.wait(lock,
                           [&] { return m_cancelled || m_items.size() + m_batch <= m_capacity; });
        }
        if (m_cancelled)
            return false;
        m_items.push_back(std::move(item));
        if (m_items.size() >= m_batch)
            m_changed.notify_all();
        return true;
    }

    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        m_changed.notify_all();
    }

    // Waits for an item; nothing once the queue is closed and empty, or cancelled.
    std::optional<T> pop()
    {
        std::unique_lock lock(m_mutex);
        if (m_items.empty()) {
            m_changed.wait(lock,
                           [&] { return m_cancelled || m_closed || m_items.size() >= m_batch; });
        }
        if (m_cancelled || m_items.empty())
            return std::nullopt;
        T item = std::move(m_items.front());
        m_items.pop_front();
        if (m_items.size() + m_batch <= m_capacity)
            m_changed.notify_all();
        return item;
    }

    void cancel()
    {
        const std::lock_guard lock(m_mutex);
        m_cancelled = true;
        m_items.clear();
        m_changed.notify_all();
    }

private:
    const size_t m_capacity;
    // A side that has to wait sleeps until this many items, or this much room, are there for
    // it: the threads then hand over a batch per wake-up instead of a single item, because
    // waking a thread costs more than handing over a page.
    const size_t m_batch;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<T> m_items;
    bool m_closed = false;
    bool m_cancelled = false;
};

} // namespace tabulor
