#pragma once

#include "production/base/Export.h"

#include <QString>

namespace tabulor {

enum class PromptButtons
{
    Ok,
    YesNo,
    YesNoCancel
};
enum class PromptIcon
{
    None,
    Information,
    Warning,
    Question
};
enum class PromptAnswer
{
    Ok,
    Yes,
    No,
    Cancel
};

struct PromptRequest
{
    QString text;
    PromptButtons buttons = PromptButtons::Ok;
    PromptIcon icon = PromptIcon::None;
    PromptAnswer defaultAnswer = PromptAnswer::Ok;
};

// Every message box and question goes through one prompt: the designer shows a dialog,
// headless use prints and takes the default answer, tests answer in advance.
class TABULOR_EXPORT Prompt
{
public:
    virtual ~Prompt() = default;
    virtual PromptAnswer ask(const PromptRequest& request) = 0;
};

// Writes the text to standard error and answers with the default.
class TABULOR_EXPORT StderrPrompt : public Prompt
{
public:
    PromptAnswer ask(const PromptRequest& request) override;
};

} // namespace tabulor
