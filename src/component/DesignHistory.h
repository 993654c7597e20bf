#pragma once

#include "definition/ReportDefinition.h"

#include <QStringList>
#include <QUndoStack>

#include <functional>

namespace tabulor {

// What the designer's windows change of a report: the definition, and the record source's
// fields that stand in neither the groups nor the details.
struct DesignState
{
    ReportDefinition definition; // without its file name and modified flag, which undo keeps
    QStringList availableFields;

    bool operator==(const DesignState&) const = default;
};

// The changes made to a report's design, each of which can be undone and redone. A change is
// recorded once it has been made, by the state before and after it; undoing or redoing one
// hands the other state to restore.
class DesignHistory
{
public:
    explicit DesignHistory(std::function<void(const DesignState&)> restore);

    QUndoStack& stack() { return m_stack; }
    const QUndoStack& stack() const { return m_stack; }

    // Records a change that has been made; nothing when it changed nothing.
    void record(const QString& description, DesignState before, DesignState after);

private:
    QUndoStack m_stack;
    std::function<void(const DesignState&)> m_restore;
};

} // namespace tabulor
