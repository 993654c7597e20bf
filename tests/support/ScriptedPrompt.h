#pragma once

#include "component/Prompt.h"

#include <QList>
#include <QStringList>

namespace tabulor::test {

// Records every message and file request and answers from lists given in advance (the default
// answer, or a cancelled choice, once a list is used up).
class ScriptedPrompt : public Prompt
{
public:
    PromptAnswer ask(const PromptRequest& request) override
    {
        messages.append(request.text);
        return answers.isEmpty() ? request.defaultAnswer : answers.takeFirst();
    }

    QString chooseFile(const FileRequest& request) override
    {
        fileRequests.append(request);
        return files.isEmpty() ? QString() : files.takeFirst();
    }

    QStringList messages;
    QList<PromptAnswer> answers;
    QList<FileRequest> fileRequests;
    QStringList files;
};

} // namespace tabulor::test
