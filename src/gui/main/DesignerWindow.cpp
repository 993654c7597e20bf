#include "gui/main/DesignerWindow.h"

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "gui/common/WidgetPrompt.h"
#include "gui/layoutwindow/LayoutWindow.h"
#include "gui/main/MainWindow.h"
#include "gui/main/QtPrinterAccess.h"
#include "gui/properties/SettingsDialog.h"

#include <QApplication>
#include <QEventLoop>

namespace tabulor {

DesignerWindow::DesignerWindow(ReportSession& session) : m_session(session)
{
    m_printer = std::make_unique<QtPrinterAccess>(nullptr);
    m_commands = std::make_unique<DesignerCommands>(session, *m_printer);
    m_window = new MainWindow(session, *m_commands);
    m_window->setAttribute(Qt::WA_DeleteOnClose, false);
    if (session.hasDefaultPrompt()) {
        m_prompt =
            std::make_unique<WidgetPrompt>(m_window, [this] { return m_commands->caption(); });
        session.setPrompt(m_prompt.get());
    }
    QObject::connect(m_window, &MainWindow::closed, m_window, [this] { m_open = false; });
    session.captions().attach(CaptionWindow::Main, m_window->captions());
    QObject::connect(m_commands.get(), &DesignerCommands::propertiesRequested, m_window,
                     [this](const QString& tab, const QString& item) {
                         if (!m_settings)
                             m_settings = new SettingsDialog(m_session, *m_commands);
                         m_settings->openAt(tab, item);
                     });
    m_window->restorePlacement();

    m_layout = new LayoutWindow(session, *m_commands, m_window);
    session.captions().attach(CaptionWindow::Layout, m_layout->captions());
    QObject::connect(m_commands.get(), &DesignerCommands::layoutWindowRequested, m_layout,
                     [this] { m_layout->showBeside(*m_window); });
    QObject::connect(m_layout, &LayoutWindow::fieldPropertiesRequested, m_commands.get(),
                     [this](const QString& field) {
                         Q_EMIT m_commands->propertiesRequested(QStringLiteral("Fields"), field);
                     });
    QObject::connect(m_window, &MainWindow::closed, m_layout, &QWidget::hide);
}

DesignerWindow::~DesignerWindow()
{
    m_session.captions().detach(CaptionWindow::Layout, m_layout->captions());
    m_session.captions().detach(CaptionWindow::Main, m_window->captions());
    delete m_settings;
    if (m_prompt)
        m_session.setPrompt(nullptr);
    delete m_window;
}

void DesignerWindow::applyAccessMode(const AccessModeActions& actions)
{
    m_commands->applyAccessMode(actions);
}

void DesignerWindow::setToolbarAllowed(bool allowed)
{
    m_commands->setToolbarAllowed(allowed);
}

void DesignerWindow::setCaption(const QString& caption)
{
    m_window->setWindowTitle(caption);
}

PageDocument& DesignerWindow::document()
{
    return m_commands->document();
}

void DesignerWindow::show(bool showLayoutWindow)
{
    m_open = true;
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    if (showLayoutWindow)
        m_layout->showBeside(*m_window);
}

void DesignerWindow::reportLoaded()
{
    m_commands->AddToRecentFiles();
    m_commands->UpdateStatus(QString());
}

void DesignerWindow::setHostDocument(PageDocument* document)
{
    m_commands->setHostDocument(document);
}

void DesignerWindow::waitUntilClosed()
{
    QEventLoop loop;
    QObject::connect(m_window, &MainWindow::closed, &loop, &QEventLoop::quit);
    if (m_open && m_window->isVisible())
        loop.exec();
    m_open = false;
}

} // namespace tabulor
