#pragma once

#include "production/base/Export.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tabulor {

class PageDocument;
class PageHooks;

// Keeps a hook of a page document registered; the hook is removed when its handle goes.
class TABULOR_EXPORT PageHook
{
public:
    PageHook() = default;
    PageHook(std::weak_ptr<PageHooks> hooks, unsigned long id) : m_hooks(std::move(hooks)), m_id(id)
    {
    }
    PageHook(PageHook&& other) noexcept { *this = std::move(other); }
    PageHook& operator=(PageHook&& other) noexcept;
    PageHook(const PageHook&) = delete;
    PageHook& operator=(const PageHook&) = delete;
    ~PageHook() { remove(); }

    void remove();

private:
    std::weak_ptr<PageHooks> m_hooks;
    unsigned long m_id = 0;
};

// The hooks of one event of a page document, called in the order they were added. Several
// parties may watch one document (the report that draws the page header, a window that shows
// progress) without knowing of each other.
class TABULOR_EXPORT PageHooks : public std::enable_shared_from_this<PageHooks>
{
public:
    using Hook = std::function<void(PageDocument&)>;

    [[nodiscard]] PageHook add(Hook hook);
    void remove(unsigned long id);
    // A hook may remove itself or others while it is called.
    void call(PageDocument& document) const;

private:
    std::vector<std::pair<unsigned long, Hook>> m_hooks;
    unsigned long m_nextId = 1;
};

} // namespace tabulor
