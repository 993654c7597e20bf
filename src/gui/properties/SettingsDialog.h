#pragma once

#include "commands/SettingsWorkingCopy.h"
#include "gui/common/WindowCaptions.h"

#include <QWidget>

#include <memory>

class QTabWidget;

namespace tabulor {

class DesignerCommands;
class FieldsPage;
class GeneralPage;
class ReportSession;
class StyleChooser;
class StylesPage;
class TextPage;

// The report's properties dialog (frmSettings): the Text, Fields, Styles and General tabs over
// working copies of the report's settings. OK and Apply hand the copies to the report as one
// change that can be undone, Cancel drops them; leaving the dialog for another window of the
// designer applies them as OK does and closes it. It is modeless and deletes itself when it
// closes; each opening loads it afresh from the report.
class SettingsDialog : public QWidget
{
    Q_OBJECT

public:
    // Fonts and colours are chosen through chooser, or Qt's dialogs when none is given.
    SettingsDialog(ReportSession& session, DesignerCommands& commands,
                   StyleChooser* chooser = nullptr);
    ~SettingsDialog() override;

    // Shows the dialog on a tab: "General"; "Fields" at the field named item (none chosen when
    // no field has that name); "Styles" at the style named item. Any other name leaves the tab
    // as it is.
    void openAt(const QString& tab, const QString& item);

    void ApplySettings();
    SettingsWorkingCopy& workingCopy() { return m_copy; }

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void load();
    void cmd_Click(int button);
    // Whether window belongs to this dialog (one of its own choosers, for instance).
    bool isOwn(const QWidget* window) const;

    ReportSession& m_session;
    SettingsWorkingCopy m_copy;
    std::unique_ptr<StyleChooser> m_ownChooser;
    WindowCaptions m_captions;
    QTabWidget* m_tabs;
    TextPage* m_text;
    FieldsPage* m_fields;
    StylesPage* m_styles;
    GeneralPage* m_general;
    bool m_settingUpPage = false; // the page setup's own dialog is in front
};

} // namespace tabulor
