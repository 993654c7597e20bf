#pragma once

#include "component/Prompt.h"

#include <QStringList>

namespace tabulor {

// Keeps what the component would tell the user, for a host that has no windows to show it in;
// with echo set it also goes to standard error. Questions get their default answer.
class RecordingPrompt final : public Prompt
{
public:
    PromptAnswer ask(const PromptRequest& request) override;

    void setEcho(bool echo) { m_echo = echo; }
    bool echo() const { return m_echo; }

    // The messages since the last clear, with line breaks as "\n".
    const QStringList& messages() const { return m_messages; }
    void clear() { m_messages.clear(); }

private:
    StderrPrompt m_stderr;
    QStringList m_messages;
    bool m_echo = false;
};

} // namespace tabulor
