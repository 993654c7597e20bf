#pragma once

#include "gui/common/WindowCaptions.h"

#include <QMainWindow>

#include <memory>

class QLabel;
class QStackedWidget;
class QTabBar;
class QToolButton;

namespace tabulor {

class DesignView;
class DesignerCommands;
class MainActions;
class PreviewControl;
class PreviewView;
class ReportSession;

// The designer's main window (frmMain): menus and toolbar, the Design and Preview tabs over
// the report grid (fa) and the pages (vp) with their navigation bar (pcb), and the status
// line. It shows the state of the designer's commands and calls them; it decides nothing.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(ReportSession& session, DesignerCommands& commands, QWidget* parent = nullptr);
    ~MainWindow() override;

    DesignerCommands& commands() { return m_commands; }
    MainActions& actions() { return *m_actions; }
    // The window's controls as a string file names them.
    WindowCaptions& captions() { return m_captions; }
    // Takes the window's place from the settings file and shows it there.
    void restorePlacement();

Q_SIGNALS:
    // The user closed the window and the designer agreed to it.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void showState();
    void showStatus(const QString& line);
    void showAbout();
    QWidget* buildPreview();

    ReportSession& m_session;
    DesignerCommands& m_commands;
    std::unique_ptr<MainActions> m_actions;
    WindowCaptions m_captions;
    QTabBar* m_tabs = nullptr;
    QStackedWidget* m_views = nullptr;
    DesignView* m_design = nullptr;
    PreviewView* m_preview = nullptr;
    PreviewControl* m_navigationBar = nullptr;
    QLabel* m_status = nullptr;
    QToolButton* m_cancelPrint = nullptr;
    // The user closed the window while the report was being built; it closes once the build
    // is done.
    bool m_closeWhenIdle = false;
};

} // namespace tabulor
