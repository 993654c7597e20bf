#pragma once

#include "component/Designer.h"

#include <QPointer>

#include <memory>

namespace tabulor {

class DesignerCommands;
class LayoutWindow;
class MainWindow;
class QtPrinterAccess;
class ReportSession;
class SettingsDialog;
class WidgetPrompt;

// The designer a component opens: the main window over the component's session, with the
// commands behind it. Messages go to message boxes unless the host gave a prompt of its own.
class DesignerWindow final : public Designer
{
public:
    explicit DesignerWindow(ReportSession& session);
    ~DesignerWindow() override;

    MainWindow& window() { return *m_window; }
    DesignerCommands& commands() { return *m_commands; }
    LayoutWindow& layoutWindow() { return *m_layout; }

    void applyAccessMode(const AccessModeActions& actions) override;
    void setToolbarAllowed(bool allowed) override;
    void setCaption(const QString& caption) override;
    PageDocument& document() override;
    void show(bool showLayoutWindow) override;
    void reportLoaded() override;
    void setHostDocument(PageDocument* document) override;
    void waitUntilClosed() override;

private:
    ReportSession& m_session;
    std::unique_ptr<QtPrinterAccess> m_printer;
    std::unique_ptr<DesignerCommands> m_commands;
    std::unique_ptr<WidgetPrompt> m_prompt;
    QPointer<MainWindow> m_window;
    LayoutWindow* m_layout = nullptr;    // a tool window of the main window, which owns it
    QPointer<SettingsDialog> m_settings; // the properties dialog while it is open
    bool m_open = false;
};

} // namespace tabulor
