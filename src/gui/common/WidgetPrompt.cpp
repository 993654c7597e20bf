#include "gui/common/WidgetPrompt.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

namespace tabulor {

namespace {

QMessageBox::Icon iconOf(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Warning:
        return QMessageBox::Warning;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton buttonOf(PromptAnswer answer)
{
    switch (answer) {
    case PromptAnswer::Ok:
        return QMessageBox::Ok;
    case PromptAnswer::Yes:
        return QMessageBox::Yes;
    case PromptAnswer::No:
        return QMessageBox::No;
    case PromptAnswer::Cancel:
        break;
    }
    return QMessageBox::Cancel;
}

QMessageBox::StandardButtons buttonsOf(PromptButtons buttons)
{
    switch (buttons) {
    case PromptButtons::Ok:
        return QMessageBox::Ok;
    case PromptButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case PromptButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case PromptButtons::YesNoCancel:
        break;
    }
    return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
}

PromptAnswer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Ok:
        return PromptAnswer::Ok;
    case QMessageBox::Yes:
        return PromptAnswer::Yes;
    case QMessageBox::No:
        return PromptAnswer::No;
    default:
        return PromptAnswer::Cancel;
    }
}

} // namespace

WidgetPrompt::WidgetPrompt(QWidget* parent, std::function<QString()> title)
    : m_parent(parent), m_title(std::move(title))
{
}

PromptAnswer WidgetPrompt::ask(const PromptRequest& request)
{
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(iconOf(request.icon), m_title(), text, buttonsOf(request.buttons), m_parent);
    box.setObjectName(QStringLiteral("promptBox"));
    box.setDefaultButton(buttonOf(request.defaultAnswer));
    box.setEscapeButton(request.buttons == PromptButtons::YesNo ? QMessageBox::No
                        : request.buttons == PromptButtons::Ok  ? QMessageBox::Ok
                                                                : QMessageBox::Cancel);
    return answerOf(box.exec());
}

QString WidgetPrompt::chooseFile(const FileRequest& request)
{
    QFileDialog dialog(m_parent, m_title(), request.folder);
    dialog.setObjectName(QStringLiteral("fileChooser"));
    const bool save = request.purpose == FileRequest::Save;
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(request.filters);
    if (request.selectedFilter >= 0 && request.selectedFilter < request.filters.size())
        dialog.selectNameFilter(request.filters.at(request.selectedFilter));
    // A name box that starts with an extension alone (".vrd") starts empty here: the filter
    // says the same, and the dialog adds the suffix.
    if (request.fileName.startsWith(u'.'))
        dialog.setDefaultSuffix(request.fileName.mid(1));
    else
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
}

} // namespace tabulor
