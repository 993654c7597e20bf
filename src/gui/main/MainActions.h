#pragma once

#include <QHash>
#include <QList>
#include <QString>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;

namespace tabulor {

class DesignerCommands;

// The main window's menus and toolbar: every entry an action with the object name of its
// classic menu entry (mNew, mOpen, ... mMRU0 to mMRU5) and every toolbar button one with
// "tb" and its command's name, their captions, shortcuts and icons, each wired to its command.
class MainActions
{
public:
    MainActions(QMainWindow& window, DesignerCommands& commands);

    QAction* action(const QString& name) const { return m_actions.value(name); }
    const QHash<QString, QAction*>& all() const { return m_actions; }
    QToolBar* toolbar() const { return m_toolbar; }
    // The toolbar button numbered n, counted from 1 with the separators; null for none.
    QAction* toolbarButton(int n) const;
    // The entries of the recent files, mMRU0 to mMRU5.
    const QList<QAction*>& recentFiles() const { return m_recentFiles; }

private:
    QAction* add(const QString& name, const QString& text, const char* icon = nullptr);
    QAction* separator(QMenu* menu, const QString& name);
    void buildToolbar(QMainWindow& window);

    QMainWindow& m_window;
    DesignerCommands& m_commands;
    QHash<QString, QAction*> m_actions;
    QList<QAction*> m_recentFiles;
    QList<QAction*> m_toolbarButtons;
    QToolBar* m_toolbar = nullptr;
};

} // namespace tabulor
