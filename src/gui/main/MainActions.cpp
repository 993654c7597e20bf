#include "gui/main/MainActions.h"

#include "commands/DesignerCommands.h"
#include "gui/common/Icons.h"
#include "production/pages/PreviewNavigation.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace tabulor {

MainActions::MainActions(QMainWindow& window, DesignerCommands& commands)
    : m_window(window), m_commands(commands)
{
    DesignerCommands* c = &commands;
    QMenuBar* bar = window.menuBar();

    QMenu* file = bar->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("mFile"));
    file->addAction(add(QStringLiteral("mNew"), QStringLiteral("&New"), "document-new"));
    file->addAction(add(QStringLiteral("mOpen"), QStringLiteral("&Open..."), "document-open"));
    file->addAction(add(QStringLiteral("mSave"), QStringLiteral("&Save"), "document-save"));
    file->addAction(add(QStringLiteral("mSaveAs"), QStringLiteral("Save &As...")));
    separator(file, QStringLiteral("mSepSaveAs"));
    file->addAction(add(QStringLiteral("mOpenDatabase"), QStringLiteral("Open Database...")));
    separator(file, QStringLiteral("mSepDatabase"));
    file->addAction(add(QStringLiteral("mPrintSetup0"), QStringLiteral("P&rinter Setup...")));
    file->addAction(add(QStringLiteral("mPrintSetup1"), QStringLiteral("Pa&ge Setup...")));
    file->addAction(add(QStringLiteral("mPrint"), QStringLiteral("&Print"), "document-print"));
    separator(file, QStringLiteral("mSepPrint"));
    file->addAction(add(QStringLiteral("mExit"), QStringLiteral("E&xit")));
    separator(file, QStringLiteral("mSepMRU"));
    for (int i = 0; i < RecentFiles::kMaximum; ++i) {
        QAction* entry = add(QStringLiteral("mMRU%1").arg(i), QString());
        file->addAction(entry);
        m_recentFiles.append(entry);
        QObject::connect(entry, &QAction::triggered, c, [c, i] { c->mMRU_Click(i); });
    }

    // Edit is not among the classic menus: its entries have no keys of the string file.
    QMenu* edit = bar->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("mEdit"));
    edit->addAction(add(QStringLiteral("mUndo"), QStringLiteral("&Undo"), "edit-undo"));
    edit->addAction(add(QStringLiteral("mRedo"), QStringLiteral("&Redo"), "edit-redo"));

    QMenu* view = bar->addMenu(QStringLiteral("&View"));
    view->setObjectName(QStringLiteral("mView"));
    view->addAction(add(QStringLiteral("mDesigner"), QStringLiteral("&Designer")));
    view->addAction(add(QStringLiteral("mPreview"), QStringLiteral("Print Pre&view")));
    separator(view, QStringLiteral("mSepView"));
    view->addAction(add(QStringLiteral("mToolbar"), QStringLiteral("&Toolbar")));
    view->addAction(
        add(QStringLiteral("mOutline"), QStringLiteral("&Layout Window"), "view-list-tree"));
    view->addAction(
        add(QStringLiteral("mGlobal"), QStringLiteral("&Global Settings"), "document-properties"));
    separator(view, QStringLiteral("mSepZoom"));
    // How the preview fits its page: not among the classic entries, and so without a key of
    // the string file.
    auto* zoomModes = new QActionGroup(&window);
    const std::pair<const char*, ZoomMode> modes[] = {{"Whole Page", ZoomMode::WholePage},
                                                      {"Page Width", ZoomMode::PageWidth},
                                                      {"Set Zoom", ZoomMode::Percent}};
    for (const auto& [text, mode] : modes) {
        QAction* choice = add(QStringLiteral("mZoom%1").arg(int(mode)), QString::fromLatin1(text));
        choice->setCheckable(true);
        choice->setChecked(mode == ZoomMode::Percent);
        zoomModes->addAction(choice);
        view->addAction(choice);
        QObject::connect(choice, &QAction::triggered, c,
                         [c, mode = mode] { c->navigation().setZoomMode(mode); });
    }

    QMenu* options = bar->addMenu(QStringLiteral("&Options"));
    options->setObjectName(QStringLiteral("mOptions"));
    options->addAction(
        add(QStringLiteral("mRefresh"), QStringLiteral("&Reload Database"), "view-refresh"));
    options->addAction(
        add(QStringLiteral("mAutoFit"), QStringLiteral("&Fit Report to Page"), "zoom-fit-best"));
    options->addAction(add(QStringLiteral("mDefault"),
                           QStringLiteral("Save Current Style As &Default"),
                           "preferences-desktop-font"));

    QMenu* help = bar->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mHelp"));
    help->addAction(add(QStringLiteral("mTopics"), QStringLiteral("Help &Topics...")));
    help->addAction(add(QStringLiteral("mAbout"), QStringLiteral("About Tabulor...")));

    action(QStringLiteral("mNew"))->setShortcut(QKeySequence::New);
    action(QStringLiteral("mOpen"))->setShortcut(QKeySequence::Open);
    action(QStringLiteral("mSave"))->setShortcut(QKeySequence::Save);
    action(QStringLiteral("mSaveAs"))->setShortcut(QKeySequence::SaveAs);
    action(QStringLiteral("mPrint"))->setShortcut(QKeySequence::Print);
    action(QStringLiteral("mRefresh"))->setShortcut(QKeySequence(Qt::Key_F5));
    action(QStringLiteral("mExit"))->setShortcut(QKeySequence::Quit);
    action(QStringLiteral("mUndo"))->setShortcut(QKeySequence::Undo);
    action(QStringLiteral("mRedo"))
        ->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence::Redo});
    for (const char* checkable : {"mDesigner", "mPreview", "mToolbar"})
        action(QString::fromLatin1(checkable))->setCheckable(true);

    const std::pair<const char*, void (DesignerCommands::*)()> commandsByName[] = {
        {"mNew", &DesignerCommands::mNew_Click},
        {"mOpen", &DesignerCommands::mOpen_Click},
        {"mSave", &DesignerCommands::mSave_Click},
        {"mSaveAs", &DesignerCommands::mSaveAs_Click},
        {"mOpenDatabase", &DesignerCommands::mOpenDatabase_Click},
        {"mPrint", &DesignerCommands::mPrint_Click},
        {"mExit", &DesignerCommands::mExit_Click},
        {"mUndo", &DesignerCommands::mUndo_Click},
        {"mRedo", &DesignerCommands::mRedo_Click},
        {"mDesigner", &DesignerCommands::mDesigner_Click},
        {"mPreview", &DesignerCommands::mPreview_Click},
        {"mToolbar", &DesignerCommands::mToolbar_Click},
        {"mOutline", &DesignerCommands::mOutline_Click},
        {"mGlobal", &DesignerCommands::mGlobal_Click},
        {"mRefresh", &DesignerCommands::mRefresh_Click},
        {"mAutoFit", &DesignerCommands::mAutoFit_Click},
        {"mDefault", &DesignerCommands::mDefault_Click},
        {"mAbout", &DesignerCommands::mAbout_Click},
    };
    for (const auto& [name, command] : commandsByName)
        QObject::connect(action(QString::fromLatin1(name)), &QAction::triggered, c, command);
    for (int index : {0, 1}) {
        QObject::connect(action(QStringLiteral("mPrintSetup%1").arg(index)), &QAction::triggered, c,
                         [c, index] { c->mPrintSetup_Click(index); });
    }
    buildToolbar(window);
}

QAction* MainActions::add(const QString& name, const QString& text, const char* icon)
{
    auto* action = new QAction(text, &m_window);
    action->setObjectName(name);
    if (icon)
        action->setIcon(themedIcon(icon));
    m_actions.insert(name, action);
    return action;
}

QAction* MainActions::separator(QMenu* menu, const QString& name)
{
    QAction* line = menu->addSeparator();
    line->setObjectName(name);
    m_actions.insert(name, line);
    return line;
}

void MainActions::buildToolbar(QMainWindow& window)
{
    m_toolbar = window.addToolBar(QStringLiteral("Toolbar"));
    m_toolbar->setObjectName(QStringLiteral("Toolbar"));
    m_toolbar->setMovable(false);
    m_toolbar->toggleViewAction()->setVisible(false); // the View menu has its own entry
    // The buttons in their classic positions, counted from 1; the others are separators.
    const std::pair<int, const char*> buttons[] = {
        {2, "New"},     {3, "Open"},       {4, "Save"},        {6, "Print"},  {8, "Refresh"},
        {9, "Default"}, {10, "FitToPage"}, {12, "Properties"}, {13, "Layout"}};
    const QHash<QString, QString> menuEntryOf = {
        {QStringLiteral("New"), QStringLiteral("mNew")},
        {QStringLiteral("Open"), QStringLiteral("mOpen")},
        {QStringLiteral("Save"), QStringLiteral("mSave")},
        {QStringLiteral("Print"), QStringLiteral("mPrint")},
        {QStringLiteral("Refresh"), QStringLiteral("mRefresh")},
        {QStringLiteral("Default"), QStringLiteral("mDefault")},
        {QStringLiteral("FitToPage"), QStringLiteral("mAutoFit")},
        {QStringLiteral("Properties"), QStringLiteral("mGlobal")},
        {QStringLiteral("Layout"), QStringLiteral("mOutline")}};
    int next = 1;
    for (const auto& [number, command] : buttons) {
        for (; next < number; ++next) {
            QAction* line = m_toolbar->addSeparator();
            line->setObjectName(QStringLiteral("tbSeparator%1").arg(next));
            m_actions.insert(line->objectName(), line);
            m_toolbarButtons.append(line);
        }
        const QString name = QString::fromLatin1(command);
        QAction* menuEntry = action(menuEntryOf.value(name));
        QAction* button = add(QStringLiteral("tb") + name, menuEntry->text());
        button->setIcon(menuEntry->icon());
        button->setToolTip(QString(menuEntry->text()).remove(u'&').remove(QStringLiteral("...")));
        QObject::connect(button, &QAction::triggered, menuEntry, &QAction::trigger);
        m_toolbar->addAction(button);
        m_toolbarButtons.append(button);
        ++next;
    }
}

QAction* MainActions::toolbarButton(int n) const
{
    return n >= 1 && n <= m_toolbarButtons.size() ? m_toolbarButtons.at(n - 1) : nullptr;
}

} // namespace tabulor
