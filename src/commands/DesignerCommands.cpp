#include "commands/DesignerCommands.h"

#include "commands/BackgroundReport.h"
#include "commands/FileChoosers.h"
#include "commands/PrinterAccess.h"
#include "commands/StatusLine.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "production/pages/FontCatalog.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"
#include "production/report/ReportColumns.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tabulor {

namespace {

const QString kWindowSection = QStringLiteral("Window");

QString quoted(const QString& text)
{
    return u'\'' + text + u'\'';
}

} // namespace

DesignerCommands::DesignerCommands(ReportSession& session, PrinterAccess& printer, QObject* parent)
    : QObject(parent), m_session(session), m_printer(printer),
      m_document(std::make_unique<PageDocument>()),
      m_navigation(std::make_unique<PreviewNavigation>(*m_document)),
      m_access(*actionsForAccessMode(zrUse)), m_applicationTitle(Tabulor::ApplicationCaption)
{
    // The designer's own document always carries the page header and footer.
    m_document->OverlayHeadersAndFooters = true;
    connect(&m_session, &ReportSession::statusChanged, this,
            [this](const QString& text) { Q_EMIT statusChanged(statusLine(text)); });
    connect(&m_session.history().stack(), &QUndoStack::indexChanged, this,
            &DesignerCommands::stateChanged);
    // The preview stays in step with the report: every rebuild while it shows renders again.
    connect(&m_session, &ReportSession::reportBuilt, this, [this] {
        if (m_view == DesignerView::Preview)
            renderPreview();
    });
}

DesignerCommands::~DesignerCommands() = default;

DesignerFacts DesignerCommands::facts() const
{
    DesignerFacts f;
    f.access = m_access;
    f.view = m_view;
    f.toolbarAllowed = m_toolbarAllowed;
    f.toolbarShown = m_toolbarShown;
    f.recordSourceOpen = m_session.data().RecordSourceOpen();
    f.busy = printing();
    f.canUndo = m_session.history().stack().canUndo();
    f.canRedo = m_session.history().stack().canRedo();
    return f;
}

QString DesignerCommands::statusLine(const QString& text) const
{
    const ReportData& data = m_session.data();
    StatusFacts f;
    f.databaseName = data.CurrentDatabase() ? data.DatabaseShortName() : QString();
    f.recordSource = data.RecordSourceName();
    f.view = m_view;
    f.rowsLoaded = data.LoadedRowCount();
    f.recordsCounted = data.TotalRowCount();
    if (m_view == DesignerView::Preview)
        f.pageCount = m_document->PageCount();
    return tabulor::statusLine(m_session.strings(), text, f);
}

QString DesignerCommands::caption() const
{
    return windowCaption(m_applicationTitle, m_session.definition().CurrentFileName);
}

void DesignerCommands::setApplicationTitle(const QString& title)
{
    m_applicationTitle = title;
    Q_EMIT stateChanged();
}

void DesignerCommands::applyAccessMode(const AccessModeActions& actions)
{
    m_access = actions;
    Q_EMIT stateChanged();
}

void DesignerCommands::setToolbarAllowed(bool allowed)
{
    m_toolbarAllowed = allowed;
    m_toolbarShown = allowed;
    Q_EMIT stateChanged();
}

QString DesignerCommands::settingsFile() const
{
    return m_session.settingsPath();
}

WindowPlacement DesignerCommands::Form_Load()
{
    m_switchingEnabled = true;
    m_openDatabaseMode = false;
    WindowPlacement placement;
    QString error;
    if (const auto settings = ProfileFile::read(settingsFile(), &error)) {
        m_recentFiles = RecentFiles::load(
            *settings, [](const QString& path) { return QFileInfo(path).isFile(); });
        placement.state =
            settings->value(kWindowSection, u"State", ProfileFile::kSettingsBuffer).toInt();
        placement.geometry = QByteArray::fromBase64(
            settings->value(kWindowSection, u"Geometry", ProfileFile::kSettingsBuffer).toLatin1());
    }
    UpdateStatus(QString());
    Q_EMIT stateChanged();
    return placement;
}

bool DesignerCommands::Form_Unload(const WindowPlacement& placement)
{
    QString error;
    ProfileFile settings = ProfileFile::read(settingsFile(), &error).value_or(ProfileFile());
    settings.setValue(kWindowSection, QStringLiteral("State"), QString::number(placement.state));
    settings.setValue(kWindowSection, QStringLiteral("Geometry"),
                      QString::fromLatin1(placement.geometry.toBase64()));
    m_recentFiles.save(settings);
    // The settings are kept as well as can be: a folder or file that cannot be written loses
    // the window's place, not the report.
    if (QDir().mkpath(QFileInfo(settingsFile()).absolutePath()))
        (void)settings.write(settingsFile(), &error);

    if (!OKtoDiscardChanges())
        return false;
    cancelPrint();
    m_printJob.reset();
    // A host's document is left showing the report as it was last designed.
    if (m_hostDocument && m_hostDocument != m_document.get() &&
        m_session.data().grid().rows().size() > 1)
        m_session.renderFullReport(*m_hostDocument);
    return true;
}

bool DesignerCommands::OKtoDiscardChanges()
{
    const ReportDefinition& d = m_session.definition();
    if (m_session.accessMode() == zrUse || !d.Dirty)
        return true;
    const QString name = d.CurrentFileName.isEmpty() ? m_session.strings().text(Message::UNTITLED)
                                                     : d.CurrentFileName;
    const PromptAnswer answer = m_session.prompt().ask(
        PromptRequest{m_session.strings().text(Message::SAVECHANGES) + u' ' + quoted(name) + u'?',
                      PromptButtons::YesNoCancel, PromptIcon::Question, PromptAnswer::Cancel});
    switch (answer) {
    case PromptAnswer::Yes:
        mSave_Click();
        return !m_session.definition().Dirty;
    case PromptAnswer::No:
        return true;
    default:
        return false;
    }
}

void DesignerCommands::AddToRecentFiles()
{
    m_recentFiles.add(m_session.definition().CurrentFileName);
    Q_EMIT stateChanged();
}

void DesignerCommands::UpdateStatus(const QString& text)
{
    m_session.UpdateStatus(text);
}

void DesignerCommands::mNew_Click()
{
    if (!OKtoDiscardChanges())
        return;
    m_session.startReport(QString());
    m_session.definition().Dirty = false;
    m_session.OpenDataSource(QString(), QString());
    m_session.applyDefaultLook();
    renderPreview();
    Q_EMIT stateChanged();
    mOpenDatabase_Click();
}

void DesignerCommands::mUndo_Click()
{
    m_session.history().stack().undo();
}

void DesignerCommands::mRedo_Click()
{
    m_session.history().stack().redo();
}

void DesignerCommands::mOpenDatabase_Click()
{
    m_openDatabaseMode = true;
    mOpen_Click();
}

void DesignerCommands::mOpen_Click()
{
    if (!OKtoDiscardChanges())
        return;
    const QString current = m_session.definition().CurrentFileName;
    if (m_openDatabaseMode) {
        const QString path = AskOpenFile(m_session.prompt(), current, true);
        if (!path.isEmpty())
            openDatabase(path);
        m_session.definition().Dirty = false;
        m_openDatabaseMode = false;
        UpdateStatus(QString());
    } else {
        const QString path = AskOpenFile(m_session.prompt(), current, false);
        if (!path.isEmpty())
            openReport(path);
    }
    Q_EMIT stateChanged();
}

void DesignerCommands::openDatabase(const QString& path)
{
    m_session.OpenDataSource(path, QString());
    if (!m_session.data().CurrentDatabase()) {
        m_session.tellUser(m_session.strings().text(Message::CANNOTOPENDATABASE) +
                               QStringLiteral("\r\n") + quoted(path),
                           PromptIcon::Warning);
        return;
    }
    m_session.startReport(path);
    // Nothing is chosen yet: no stale pages stay on show.
    m_document->KillDoc();
    m_navigation->documentChanged();
    Q_EMIT previewRendered();
}

void DesignerCommands::openReport(const QString& path)
{
    if (m_session.OpenReportFile(path)) {
        ReportDefinition& d = m_session.definition();
        d.CurrentFileName = path;
        d.Dirty = false;
        m_openDatabaseMode = false;
        UpdateStatus(QString());
    } else {
        m_session.tellUser(quoted(path) + QStringLiteral("\r\n") +
                               m_session.strings().text(Message::INVALIDDATATYPE),
                           PromptIcon::Warning);
    }
    Q_EMIT stateChanged();
}

void DesignerCommands::mSave_Click()
{
    ReportDefinition& d = m_session.definition();
    if (d.CurrentFileName.isEmpty()) {
        mSaveAs_Click();
        return;
    }
    if (m_session.saveReportFile(d.CurrentFileName)) {
        d.Dirty = false;
        m_session.history().stack().setClean();
    }
    Q_EMIT stateChanged();
}

void DesignerCommands::mSaveAs_Click()
{
    const QString path = AskSaveFile(m_session.prompt(), m_session.definition().CurrentFileName);
    if (path.isEmpty())
        return;
    m_session.definition().CurrentFileName = path;
    AddToRecentFiles();
    UpdateStatus(QString());
    mSave_Click();
}

void DesignerCommands::mMRU_Click(int index)
{
    if (index < 0 || index >= m_recentFiles.paths().size() || !OKtoDiscardChanges())
        return;
    openReport(m_recentFiles.paths().at(index));
}

void DesignerCommands::mExit_Click()
{
    Q_EMIT closeRequested();
}

void DesignerCommands::showView(DesignerView view)
{
    m_view = view;
    Q_EMIT stateChanged();
    Q_EMIT statusChanged(statusLine());
}

void DesignerCommands::mPreview_Click()
{
    m_switchingEnabled = false;
    if (m_session.data().grid().rows().empty()) {
        // Nothing to preview: the design view stays, and its tab with it.
        showView(DesignerView::Design);
        m_switchingEnabled = true;
        return;
    }
    showView(m_view == DesignerView::Design ? DesignerView::Preview : DesignerView::Design);
    // The window shows the other view before the report is rendered into it.
    if (QCoreApplication::instance())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_switchingEnabled = true;
    if (m_view == DesignerView::Preview)
        renderPreview();
}

void DesignerCommands::mDesigner_Click()
{
    if (m_switchingEnabled && m_view == DesignerView::Preview)
        mPreview_Click();
}

void DesignerCommands::zrtab_Click(int tab)
{
    const DesignerView wanted = tab == 2 ? DesignerView::Preview : DesignerView::Design;
    if (m_switchingEnabled && wanted != m_view)
        mPreview_Click();
}

void DesignerCommands::Form_KeyPress(int keyAscii)
{
    if (keyAscii == 27 && m_view == DesignerView::Preview)
        mPreview_Click();
}

void DesignerCommands::mToolbar_Click()
{
    m_toolbarShown = !m_toolbarShown;
    Q_EMIT stateChanged();
}

void DesignerCommands::mOutline_Click()
{
    Q_EMIT layoutWindowRequested();
}

void DesignerCommands::mGlobal_Click()
{
    Q_EMIT propertiesRequested(QStringLiteral("General"), QString());
}

void DesignerCommands::mRefresh_Click()
{
    m_session.reloadData();
}

void DesignerCommands::mAutoFit_Click()
{
    if (m_session.fitColumns(m_document->setup(), m_document->fonts()))
        Q_EMIT stateChanged();
}

void DesignerCommands::mDefault_Click()
{
    const PromptAnswer answer = m_session.prompt().ask(
        PromptRequest{m_session.strings().text(Message::SAVEASDEFAULT), PromptButtons::YesNo,
                      PromptIcon::Question, PromptAnswer::No});
    if (answer == PromptAnswer::Yes)
        (void)m_session.SaveDefaultStyle(); // a failure has been told
}

void DesignerCommands::mAbout_Click()
{
    Q_EMIT aboutRequested();
}

void DesignerCommands::mPrintSetup_Click(int index)
{
    PageSetup page = m_document->setup();
    applyPageSettings(page, m_session.definition().global);
    if (!m_printer.setup(index, page))
        return;
    m_document->setup().paper = page.paper;
    m_session.changeDefinition(index == 0 ? QStringLiteral("Printer Setup")
                                          : QStringLiteral("Page Setup"),
                               [&](ReportDefinition& definition, QStringList&) {
                                   GlobalSettings& g = definition.global;
                                   g.Orientation = page.orientation;
                                   g.Left = page.marginLeft;
                                   g.Top = page.marginTop;
                                   g.Right = page.marginRight;
                                   g.Bottom = page.marginBottom;
                               });
    // The preview renders again with the rebuild; without rows it is rendered here.
    if (m_view == DesignerView::Preview && !m_session.data().RecordSourceOpen())
        renderPreview();
    Q_EMIT stateChanged();
}

void DesignerCommands::renderPreview()
{
    m_session.RenderReport(*m_document);
    m_navigation->documentChanged();
    Q_EMIT previewRendered();
    Q_EMIT statusChanged(statusLine());
}

void DesignerCommands::mPrint_Click()
{
    if (printing() || !m_session.data().RecordSourceOpen())
        return;
    UpdateStatus(m_session.strings().text(Message::GENERATINGFULLREPORT));
    m_printJob = std::make_unique<BackgroundReport>(m_session);
    connect(m_printJob.get(), &BackgroundReport::pageStarted, this, [this](int page) {
        UpdateStatus(m_session.strings().text(Message::GENERATINGPAGE) + u' ' +
                     QString::number(page) + QStringLiteral("..."));
    });
    connect(m_printJob.get(), &BackgroundReport::finished, this, &DesignerCommands::finishPrint);
    Q_EMIT stateChanged();
}

void DesignerCommands::cancelPrint()
{
    if (m_printJob)
        m_printJob->cancel();
}

void DesignerCommands::finishPrint(bool complete)
{
    for (const QString& message : m_printJob->messages())
        m_session.tellUser(message, PromptIcon::Warning);
    if (complete)
        print();
    m_printJob.reset();
    UpdateStatus(QString());
    Q_EMIT stateChanged();
}

void DesignerCommands::print()
{
    const StringTable& s = m_session.strings();
    const PageDocument& pages = m_printJob->document();
    const QString question = s.text(Message::READYTOPRINT) + u' ' +
                             QString::number(pages.PageCount()) + u' ' + s.text(Message::PAGESON) +
                             u' ' + m_printer.deviceName() + QStringLiteral("\r\n") +
                             s.text(Message::PRESSOK);
    if (m_session.prompt().ask(PromptRequest{question, PromptButtons::OkCancel,
                                             PromptIcon::Question, PromptAnswer::Cancel}) !=
        PromptAnswer::Ok)
        return;
    QString error;
    if (!m_printer.print(pages, &error))
        m_session.tellUser(QStringLiteral("cannot print: ") + error, PromptIcon::Warning);
}

} // namespace tabulor
