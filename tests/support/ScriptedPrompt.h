#pragma once

#include "component/Prompt.h"

#include <QList>
#include <QStringList>

namespace tabulor::test {

// Records every message and answers from a list given in advance (the default answer once
// the list is used up).
class ScriptedPrompt : public Prompt
{
public:
    PromptAnswer ask(const PromptRequest& request) override
    {
        messages.append(request.text);
        return answers.isEmpty() ? request.defaultAnswer : answers.takeFirst();
    }

    QStringList messages;
    QList<PromptAnswer> answers;
};

} // namespace tabulor::test
