#include "production/pages/PageHooks.h"

#include <algorithm>

namespace tabulor {

PageHook& PageHook::operator=(PageHook&& other) noexcept
{
    if (this != &other) {
        remove();
        m_hooks = std::exchange(other.m_hooks, {});
        m_id = std::exchange(other.m_id, 0);
    }
    return *this;
}

void PageHook::remove()
{
    if (const std::shared_ptr<PageHooks> hooks = m_hooks.lock())
        hooks->remove(m_id);
    m_hooks.reset();
}

PageHook PageHooks::add(Hook hook)
{
    const unsigned long id = m_nextId++;
    m_hooks.emplace_back(id, std::move(hook));
    return PageHook(weak_from_this(), id);
}

void PageHooks::remove(unsigned long id)
{
    std::erase_if(m_hooks, [id](const auto& entry) { return entry.first == id; });
}

void PageHooks::call(PageDocument& document) const
{
    if (m_hooks.empty())
        return;
    // Called from a copy: a hook may remove itself or another one meanwhile.
    const std::vector<std::pair<unsigned long, Hook>> hooks = m_hooks;
    for (const auto& [id, hook] : hooks) {
        const bool stillThere =
            std::any_of(m_hooks.begin(), m_hooks.end(),
                        [id = id](const auto& entry) { return entry.first == id; });
        if (stillThere)
            hook(document);
    }
}

} // namespace tabulor
