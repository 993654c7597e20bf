#pragma once

#include "production/base/Export.h"

#include <QString>
#include <QStringList>

namespace tabulor {

enum class PromptButtons
{
    Ok,
    OkCancel,
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

// A file to choose, as the designer's Open and Save As dialogs ask for one.
struct FileRequest
{
    enum Purpose
    {
        Open, // an existing file
        Save, // a file to write; asks before replacing one
    };
    Purpose purpose = Open;
    QStringList filters; // "Description (*.ext *.ext2)", as Qt's file dialogs take them
    int selectedFilter = 0;
    QString folder;   // where the dialog starts; empty for the current folder
    QString fileName; // what the name box starts with
};

// Every message box, question and file chooser goes through one prompt: the designer shows a
// dialog, headless use prints and takes the default answer, tests answer in advance.
class TABULOR_EXPORT Prompt
{
public:
    virtual ~Prompt() = default;
    virtual PromptAnswer ask(const PromptRequest& request) = 0;
    // The chosen file's path; empty when the choice was cancelled. Without windows to show a
    // chooser in, every choice is cancelled.
    virtual QString chooseFile(const FileRequest& request);
};

// Writes the text to standard error and answers with the default.
class TABULOR_EXPORT StderrPrompt : public Prompt
{
public:
    PromptAnswer ask(const PromptRequest& request) override;
};

} // namespace tabulor
