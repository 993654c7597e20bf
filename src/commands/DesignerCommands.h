#pragma once

#include "commands/ActionState.h"
#include "component/Prompt.h"
#include "component/RecentFiles.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

#include <memory>

namespace tabulor {

class BackgroundReport;
class PageDocument;
class PreviewNavigation;
class PrinterAccess;
class ReportSession;

// How the main window was placed, as the settings file keeps it between runs.
struct WindowPlacement
{
    int state = 0;       // 0 normal, 1 minimised, 2 maximised
    QByteArray geometry; // the window's own record of its size and place; empty for none
};

// What the designer's main window does, without the window: its menu commands with their
// questions and file choosers (through the session's prompt), the view it shows, the recent
// files, the state of every action, the status line and the caption, and printing. The window
// shows this state and calls these commands; tests call them directly.
class DesignerCommands : public QObject
{
    Q_OBJECT

public:
    DesignerCommands(ReportSession& session, PrinterAccess& printer, QObject* parent = nullptr);
    ~DesignerCommands() override;

    ReportSession& session() { return m_session; }
    // The designer's own document (the preview's pages) and the page and zoom it shows.
    PageDocument& document() { return *m_document; }
    PreviewNavigation& navigation() { return *m_navigation; }

    DesignerView view() const { return m_view; }
    bool printing() const { return m_printJob != nullptr; }
    DesignerFacts facts() const;
    QHash<QString, ActionFlags> actionState() const { return actionStateFor(facts()); }
    const RecentFiles& recentFiles() const { return m_recentFiles; }
    // The status line for a status text (empty: the default status) and the window caption.
    QString statusLine(const QString& text = QString()) const;
    QString caption() const;
    // The document a host gave for the finished report, or null.
    void setHostDocument(PageDocument* document) { m_hostDocument = document; }
    void setApplicationTitle(const QString& title);

    // The host's settings for the window.
    void applyAccessMode(const AccessModeActions& actions);
    void setToolbarAllowed(bool allowed);

    // Loading the window: the recent files and the window's placement from the settings file.
    WindowPlacement Form_Load();
    // Closing the window: its placement and the recent files are written, then unsaved changes
    // may be saved. False when the user keeps the window open. Otherwise a host's document
    // receives the full report as last designed.
    [[nodiscard]] bool Form_Unload(const WindowPlacement& placement);

    // Whether unsaved changes may be dropped, after asking to save them where the access mode
    // allows saving.
    [[nodiscard]] bool OKtoDiscardChanges();
    void AddToRecentFiles();
    void UpdateStatus(const QString& text);

    void mNew_Click();
    void mOpen_Click();
    void mOpenDatabase_Click();
    void mSave_Click();
    void mSaveAs_Click();
    void mMRU_Click(int index);
    // The last change made to the report is undone, or the last one undone made again.
    void mUndo_Click();
    void mRedo_Click();
    void mExit_Click();
    void mPreview_Click();
    void mDesigner_Click();
    // The Design (1) or Preview (2) tab was clicked.
    void zrtab_Click(int tab);
    // A key typed in the window: Esc returns from the preview.
    void Form_KeyPress(int keyAscii);
    void mToolbar_Click();
    void mOutline_Click();
    void mGlobal_Click();
    void mRefresh_Click();
    void mAutoFit_Click();
    void mDefault_Click();
    void mAbout_Click();
    void mPrintSetup_Click(int index);
    // Lays the full report out on a thread of its own, asks before printing it, and prints it.
    void mPrint_Click();
    void cancelPrint();

    // Renders the report into the designer's document for the preview.
    void renderPreview();

Q_SIGNALS:
    // Anything the window shows may have changed: actions, view, recent files, caption.
    void stateChanged();
    void statusChanged(const QString& line);
    // The preview's document was rendered again.
    void previewRendered();
    void layoutWindowRequested();
    // The properties dialog on a tab ("General", "Fields", "Styles"), at an item.
    void propertiesRequested(const QString& tab, const QString& item);
    void aboutRequested();
    void closeRequested();

private:
    void openReport(const QString& path);
    void openDatabase(const QString& path);
    void showView(DesignerView view);
    void finishPrint(bool complete);
    void print();
    QString settingsFile() const;

    ReportSession& m_session;
    PrinterAccess& m_printer;
    std::unique_ptr<PageDocument> m_document;
    std::unique_ptr<PreviewNavigation> m_navigation;
    PageDocument* m_hostDocument = nullptr;
    AccessModeActions m_access;
    RecentFiles m_recentFiles;
    DesignerView m_view = DesignerView::Design;
    QString m_applicationTitle;
    bool m_toolbarAllowed = true;
    bool m_toolbarShown = true;
    bool m_switchingEnabled = true; // false while the view changes by itself
    bool m_openDatabaseMode = false;
    std::unique_ptr<BackgroundReport> m_printJob;
};

} // namespace tabulor
