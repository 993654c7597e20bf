#include "capi/RecordingPrompt.h"

namespace tabulor {

PromptAnswer RecordingPrompt::ask(const PromptRequest& request)
{
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_messages.append(text);
    return m_echo ? m_stderr.ask(request) : request.defaultAnswer;
}

} // namespace tabulor
