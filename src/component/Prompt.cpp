#include "component/Prompt.h"

#include <cstdio>

namespace tabulor {

QString Prompt::chooseFile(const FileRequest&)
{
    return {};
}

PromptAnswer StderrPrompt::ask(const PromptRequest& request)
{
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    std::fflush(stderr);
    return request.defaultAnswer;
}

} // namespace tabulor
