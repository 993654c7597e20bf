#include "gui/main/MainWindow.h"

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "gui/common/Icons.h"
#include "gui/design/DesignView.h"
#include "gui/main/MainActions.h"
#include "gui/preview/PreviewControl.h"
#include "gui/preview/PreviewView.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QShortcut>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace tabulor {

MainWindow::MainWindow(ReportSession& session, DesignerCommands& commands, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_commands(commands), m_captions(*this)
{
    setObjectName(QStringLiteral("frmMain"));
    m_actions = std::make_unique<MainActions>(*this, commands);
    for (QAction* action : m_actions->all())
        addAction(action); // shortcuts work wherever the focus is in the window

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabs = new QTabBar(central);
    m_tabs->setObjectName(QStringLiteral("zrtab"));
    m_tabs->addTab(QStringLiteral("Design"));
    m_tabs->addTab(QStringLiteral("Preview"));
    m_tabs->setDrawBase(true);
    m_tabs->setExpanding(false);
    m_views = new QStackedWidget(central);
    m_views->setObjectName(QStringLiteral("views"));
    m_design = new DesignView(session, m_views);
    m_views->addWidget(m_design);
    m_views->addWidget(buildPreview());
    layout->addWidget(m_tabs);
    layout->addWidget(m_views, 1);
    setCentralWidget(central);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_cancelPrint = new QToolButton(this);
    m_cancelPrint->setObjectName(QStringLiteral("cmdCancelPrint"));
    m_cancelPrint->setIcon(themedIcon("process-stop"));
    m_cancelPrint->setText(QStringLiteral("Cancel"));
    m_cancelPrint->setToolTip(QStringLiteral("Stop the report for the printer"));
    m_cancelPrint->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_cancelPrint->setAutoRaise(true);
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_cancelPrint);
    statusBar()->setSizeGripEnabled(true);

    m_captions.setTitleHandler(
        [this](const QString& title) { m_commands.setApplicationTitle(title); });
    m_captions.setToolbarButtons([this](int n) { return m_actions->toolbarButton(n); });
    applyBuiltInCaptions(CaptionWindow::Main, m_captions);

    connect(m_tabs, &QTabBar::currentChanged, &commands,
            [this](int index) { m_commands.zrtab_Click(index + 1); });
    connect(m_cancelPrint, &QToolButton::clicked, &commands, &DesignerCommands::cancelPrint);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setObjectName(QStringLiteral("escape"));
    connect(escape, &QShortcut::activated, &commands, [this] { m_commands.Form_KeyPress(27); });
    connect(&commands, &DesignerCommands::stateChanged, this, &MainWindow::showState);
    connect(&commands, &DesignerCommands::statusChanged, this, &MainWindow::showStatus);
    // A font that is missing or a value brought into range while the preview is rendered is
    // told over the status line for a while; the status line comes back after it.
    connect(&session, &ReportSession::renderWarning, this,
            [this](const QString& text) { statusBar()->showMessage(text, 10000); });
    connect(&commands, &DesignerCommands::previewRendered, m_preview,
            &PreviewView::documentRendered);
    connect(&commands, &DesignerCommands::aboutRequested, this, &MainWindow::showAbout);
    connect(&commands, &DesignerCommands::closeRequested, this, &QWidget::close);
    connect(m_design, &DesignView::stylePropertiesRequested, &commands,
            [this](const QString& style) {
                Q_EMIT m_commands.propertiesRequested(QStringLiteral("Styles"), style);
            });
    connect(m_design, &DesignView::fieldPropertiesRequested, &commands,
            [this](const QString& field) {
                Q_EMIT m_commands.propertiesRequested(QStringLiteral("Fields"), field);
            });
    connect(&session, &ReportSession::busyChanged, this, [this](bool busy) {
        if (busy) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
            return;
        }
        QApplication::restoreOverrideCursor();
        if (std::exchange(m_closeWhenIdle, false))
            QTimer::singleShot(0, this, &QWidget::close);
    });
    resize(960, 700);
    showState();
    showStatus(m_commands.statusLine());
}

MainWindow::~MainWindow() = default;

QWidget* MainWindow::buildPreview()
{
    auto* page = new QWidget(m_views);
    page->setObjectName(QStringLiteral("previewPage"));
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_preview = new PreviewView(m_commands.document(), m_commands.navigation(), page);
    m_navigationBar = new PreviewControl(page);
    m_navigationBar->setPrinterControl(&m_commands.navigation(), m_preview);
    layout->addWidget(m_navigationBar);
    layout->addWidget(m_preview, 1);
    return page;
}

void MainWindow::restorePlacement()
{
    const WindowPlacement placement = m_commands.Form_Load();
    if (!placement.geometry.isEmpty())
        restoreGeometry(placement.geometry);
    if (placement.state == 2)
        setWindowState(windowState() | Qt::WindowMaximized);
    else if (placement.state == 1)
        setWindowState(windowState() | Qt::WindowMinimized);
}

void MainWindow::showState()
{
    const QHash<QString, ActionFlags> state = m_commands.actionState();
    for (auto it = state.cbegin(); it != state.cend(); ++it) {
        if (QAction* action = m_actions->action(it.key())) {
            action->setVisible(it->visible);
            action->setEnabled(it->enabled);
            if (action->isCheckable())
                action->setChecked(it->checked);
        }
    }
    const RecentFiles& recent = m_commands.recentFiles();
    for (int i = 0; i < m_actions->recentFiles().size(); ++i) {
        QAction* entry = m_actions->recentFiles().at(i);
        entry->setVisible(i < recent.paths().size());
        if (i < recent.paths().size())
            entry->setText(recent.caption(i));
    }
    m_actions->action(QStringLiteral("mSepMRU"))->setVisible(!recent.paths().isEmpty());
    m_actions->toolbar()->setVisible(state.value(QStringLiteral("mToolbar")).checked);

    const bool preview = m_commands.view() == DesignerView::Preview;
    m_tabs->setCurrentIndex(preview ? 1 : 0);
    m_views->setCurrentIndex(preview ? 1 : 0);
    if (preview)
        m_preview->setFocus();
    const ZoomMode zoom = m_commands.navigation().zoomMode();
    if (QAction* mode = m_actions->action(QStringLiteral("mZoom%1").arg(int(zoom))))
        mode->setChecked(true);
    m_cancelPrint->setVisible(m_commands.printing());
    setWindowTitle(m_commands.caption());
}

void MainWindow::showStatus(const QString& line)
{
    m_status->setText(line);
    setWindowTitle(m_commands.caption());
}

void MainWindow::showAbout()
{
    QMessageBox about(this);
    about.setObjectName(QStringLiteral("frmAbout"));
    about.setWindowTitle(QStringLiteral("About Tabulor"));
    about.setIconPixmap(themedIcon("document-properties").pixmap(48, 48));
    about.setText(QStringLiteral("<b>Tabulor</b> %1").arg(QStringLiteral(TABULOR_VERSION_TEXT)));
    about.setInformativeText(
        QStringLiteral("Designs, previews and prints tabular reports over databases."));
    about.exec();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // The events of a window are handled while a report is built, so a close can arrive in the
    // middle of one; the half-built report is neither saved nor handed to a host.
    if (m_session.Building()) {
        event->ignore();
        m_closeWhenIdle = true;
        return;
    }
    WindowPlacement placement;
    placement.state = isMaximized() ? 2 : isMinimized() ? 1 : 0;
    placement.geometry = saveGeometry();
    if (!m_commands.Form_Unload(placement)) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT closed();
}

} // namespace tabulor
