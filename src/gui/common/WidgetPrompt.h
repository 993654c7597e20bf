#pragma once

#include "component/Prompt.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace tabulor {

// The prompt of a program with windows: message boxes and questions as QMessageBox, file
// choices as QFileDialog, in front of the window given, titled with the application's title.
class WidgetPrompt : public Prompt
{
public:
    WidgetPrompt(QWidget* parent, std::function<QString()> title);

    PromptAnswer ask(const PromptRequest& request) override;
    QString chooseFile(const FileRequest& request) override;

private:
    QPointer<QWidget> m_parent;
    std::function<QString()> m_title;
};

} // namespace tabulor
