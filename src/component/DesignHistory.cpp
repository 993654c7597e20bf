#include "component/DesignHistory.h"

namespace tabulor {

namespace {

// One change, undone and redone by restoring the state before or after it.
class DesignChange : public QUndoCommand
{
public:
    DesignChange(const QString& description, DesignState before, DesignState after,
                 const std::function<void(const DesignState&)>& restore)
        : QUndoCommand(description), m_before(std::move(before)), m_after(std::move(after)),
          m_restore(restore)
    {
    }

    void undo() override { m_restore(m_before); }
    void redo() override
    {
        // Pushed once the change has been made: the first redo has nothing to do.
        if (m_made)
            m_restore(m_after);
        m_made = true;
    }

private:
    DesignState m_before;
    DesignState m_after;
    const std::function<void(const DesignState&)>& m_restore;
    bool m_made = false;
};

} // namespace

DesignHistory::DesignHistory(std::function<void(const DesignState&)> restore)
    : m_restore(std::move(restore))
{
}

void DesignHistory::record(const QString& description, DesignState before, DesignState after)
{
    if (before == after)
        return;
    m_stack.push(new DesignChange(description, std::move(before), std::move(after), m_restore));
}

} // namespace tabulor
