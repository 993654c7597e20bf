#include "component/ReportSession.h"

#include "definition/DefaultStyle.h"
#include "production/data/DatabaseLocation.h"
#include "production/databases/OpenDatabase.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pagination/FitToPage.h"
#include "production/report/GridBodyRows.h"
#include "production/report/ReportColumns.h"
#include "production/report/ReportRenderer.h"
#include "production/report/StreamedBodyRows.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace tabulor {

namespace {

// Places each listed field: it leaves the available fields (the first entry with exactly
// that name, if any) and joins the list.
void placeFields(const QStringList& names, QStringList& list, QStringList& available)
{
    for (const QString& name : names) {
        list.append(name);
        available.removeOne(name);
    }
}

QString quoted(const QString& text)
{
    return u'\'' + text + u'\'';
}

} // namespace

class ReportSession::GridChange
{
public:
    explicit GridChange(ReportSession& session) : m_session(session)
    {
        if (m_session.m_gridChanges++ == 0)
            Q_EMIT m_session.gridAboutToChange();
    }
    ~GridChange()
    {
        if (--m_session.m_gridChanges == 0)
            Q_EMIT m_session.gridChanged();
    }
    GridChange(const GridChange&) = delete;
    GridChange& operator=(const GridChange&) = delete;

private:
    ReportSession& m_session;
};

ReportSession::ReportSession(Prompt* prompt)
    : m_prompt(prompt ? prompt : &m_stderrPrompt), m_settingsPath(settingsFilePath())
{
    // Undoing every change since the report was opened or saved leaves it unchanged.
    connect(&m_history.stack(), &QUndoStack::indexChanged, this,
            [this] { m_definition.Dirty = !m_history.stack().isClean(); });
}

void ReportSession::ResetDefinition()
{
    m_definition.CurrentFileName.clear();
    m_definition.Dirty = false;
    m_definition.DataBaseName.clear();
    m_definition.RecordSource.clear();
    m_definition.groups.clear();
    m_definition.details.clear();
    m_data.reset();
}

void ReportSession::loadDesigner()
{
    applyDefaultLook();
    loadStrings(false);
}

void ReportSession::loadStrings(bool applyCaptions)
{
    if (const auto fault = m_strings.LoadStrings(applyCaptions, &m_captions))
        tellUser(m_strings.faultMessage(*fault), PromptIcon::Warning);
}

void ReportSession::applyDefaultLook()
{
    ApplyBuiltInStyles(m_definition, DefaultTexts{m_strings.text(Message::DEFREPORTTITLE),
                                                  m_strings.text(Message::DEFHEADER),
                                                  m_strings.text(Message::DEFFOOTER)});
    QString error;
    const auto settings = ProfileFile::read(m_settingsPath, &error);
    if (!settings) {
        // No settings file: the built-in look stands. One that is there but cannot be read
        // (a folder, a pipe, a huge file) is worth a word.
        if (QFileInfo::exists(m_settingsPath))
            tellUser(m_strings.text(Message::SETTINGSUNREADABLE).arg(error), PromptIcon::Warning);
        return;
    }
    QString badKey;
    if (!LoadDefaultStyle(m_definition, *settings, &badKey)) {
        tellUser(m_strings.text(Message::BADDEFAULTSTYLE).arg(m_settingsPath, badKey),
                 PromptIcon::Warning);
    }
}

bool ReportSession::SaveDefaultStyle()
{
    QString error;
    std::optional<ProfileFile> read = ProfileFile::read(m_settingsPath, &error);
    // A settings file that is there but cannot be read is not replaced by one that would
    // hold nothing but the style.
    const bool unreadable = !read && QFileInfo::exists(m_settingsPath);
    ProfileFile settings = std::move(read).value_or(ProfileFile());
    tabulor::SaveDefaultStyle(m_definition, settings);
    const QString folder = QFileInfo(m_settingsPath).absolutePath();
    if (unreadable || !QDir().mkpath(folder) || !settings.write(m_settingsPath, &error)) {
        tellUser(m_strings.text(Message::COULDNOTSAVESTYLE).arg(quoted(m_settingsPath), error),
                 PromptIcon::Warning);
        return false;
    }
    return true;
}

bool ReportSession::OpenReportFile(const QString& path, const std::optional<QString>& database)
{
    m_lastReadError.reset();
    m_lastFileError.reset();
    QString error;
    const auto file = ProfileFile::read(path, &error);
    if (!file) {
        m_lastFileError = error;
        return false;
    }
    if (ReadFileValue(*file, u"General", u"Version").isEmpty())
        return false;

    UpdateStatus(m_strings.text(Message::OPENING) + QStringLiteral(" '") +
                 QFileInfo(path).fileName() + QStringLiteral("'..."));
    const bool result = ReadReportFile(path, *file, database);
    UpdateStatus(QString());
    return result;
}

bool ReportSession::ReadReportFile(const QString& path, const ProfileFile& file,
                                   const std::optional<QString>& database)
{
    const QString databaseName =
        database.value_or(ReadFileValue(file, u"RecordSource", u"DataBaseName"));
    const QString recordSource = ReadFileValue(file, u"RecordSource", u"RecordSource");

    // The database is opened once: checked here, then used.
    std::unique_ptr<DataSource> opened;
    if (!m_data.hostRecordset()) {
        opened = openCheckedDatabase(databaseName, path);
        if (!opened)
            return false;
    }

    DefinitionReadError readError;
    auto staged = readStagedDefinition(file, m_definition.styles, &readError);
    if (!staged) {
        m_lastReadError = readError;
        return false;
    }

    const GridChange change(*this);
    m_definition.groups.clear();
    m_definition.details.clear();
    OpenDataSource(databaseName, recordSource, path, std::move(opened));
    m_definition.DataBaseName = databaseName;
    m_definition.RecordSource = recordSource;
    m_definition.global = staged->global;
    m_definition.styles = staged->styles;
    m_definition.fields = staged->fields;
    placeFields(staged->groups, m_definition.groups, m_data.availableFields());
    placeFields(staged->details, m_definition.details, m_data.availableFields());
    applyStoredWidths();
    rebuildReport();
    // A report read from a file starts a history of its own.
    m_history.stack().clear();
    return true;
}

void ReportSession::startReport(const QString& databaseName)
{
    m_definition.CurrentFileName.clear();
    m_definition.DataBaseName = databaseName;
    m_definition.RecordSource.clear();
    m_definition.fields.clear();
    m_definition.groups.clear();
    m_definition.details.clear();
    m_history.stack().clear();
}

std::unique_ptr<DataSource> ReportSession::openCheckedDatabase(const QString& name,
                                                               const QString& definitionPath)
{
    QString error;
    if (!name.isEmpty()) {
        if (std::unique_ptr<DataSource> database =
                openDatabase(resolveDatabasePath(name, definitionPath), &error))
            return database;
    }
    QString text =
        m_strings.text(Message::CANNOTOPENDATABASE) + QStringLiteral("\r\n") + quoted(name);
    if (!error.isEmpty())
        text += QStringLiteral("\r\n") + error;
    tellUser(text, PromptIcon::Warning);
    return nullptr;
}

bool ReportSession::saveReportFile(const QString& path)
{
    QString error;
    if (WriteReportFile(m_definition, path, &error))
        return true;
    tellUser(m_strings.text(Message::COULDNOTSAVE).arg(quoted(path), error), PromptIcon::Warning);
    return false;
}

QString ReportSession::invalidFileMessage(const QString& path) const
{
    return m_strings.text(Message::INVALIDDATATYPE) + QStringLiteral("\r\n") + quoted(path);
}

void ReportSession::tellUser(const QString& text, PromptIcon icon)
{
    m_prompt->ask(PromptRequest{text, PromptButtons::Ok, icon, PromptAnswer::Ok});
}

void ReportSession::UpdateStatus(const QString& text)
{
    Q_EMIT statusChanged(text);
}

} // namespace tabulor

namespace tabulor {

namespace {

// The display format a new field gets for its type.
QString defaultFormat(qint16 fieldType)
{
    switch (fieldType) {
    case FieldSingle:
    case FieldDouble:
    case FieldFloat:
    case FieldDecimal:
    case FieldNumeric:
        return QStringLiteral("#.##");
    case FieldCurrency:
        return QStringLiteral("($#,###.##)");
    case FieldDate:
        return QStringLiteral("Medium Date");
    default:
        return QString();
    }
}

} // namespace

void ReportSession::OpenDataSource(const QString& databasePath, const QString& recordSourceName,
                                   const QString& definitionPath,
                                   std::unique_ptr<DataSource> opened)
{
    const GridChange change(*this);
    Q_EMIT busyChanged(true);
    m_data.OpenDataSource(databasePath, recordSourceName, definitionPath, std::move(opened));
    rebuildReport();
    Q_EMIT busyChanged(false);
    // The working view shows the rows read before a damaged part, and the status says why.
    UpdateStatus(m_data.readError());
}

void ReportSession::selectRecordSource(const QString& name)
{
    if (name == m_data.RecordSourceName())
        return;
    const GridChange change(*this);
    const DesignState before = designState();
    m_definition.groups.clear();
    m_definition.details.clear();
    OpenDataSource(m_data.DatabasePath(), name, m_data.definitionPath());
    m_definition.RecordSource = name;

    const OutlineGrid& grid = m_data.grid();
    m_definition.fields.clear();
    for (int c = 0; c < grid.columnCount(); ++c) {
        const GridColumn& column = grid.column(c);
        ReportField field;
        field.ID = field.Title = column.title;
        field.Sort = 1;
        field.Format = defaultFormat(column.type);
        field.Aggregate = 0;
        field.Align = column.alignment;
        field.Width = 0;
        m_definition.fields.append(field);
    }
    m_definition.Dirty = true;
    rebuildReport();
    m_history.record(QStringLiteral("Record Source"), before, designState());
}

DesignState ReportSession::designState() const
{
    DesignState state{m_definition, m_data.availableFields()};
    state.definition.CurrentFileName.clear();
    state.definition.Dirty = false;
    return state;
}

void ReportSession::restoreDesign(const DesignState& state)
{
    const GridChange change(*this);
    const ReportDefinition& d = state.definition;
    if (d.RecordSource != m_data.RecordSourceName() || d.DataBaseName != m_data.DatabasePath())
        m_data.OpenDataSource(d.DataBaseName, d.RecordSource, m_data.definitionPath());
    const QString fileName = m_definition.CurrentFileName;
    const bool dirty = m_definition.Dirty;
    m_definition = d;
    m_definition.CurrentFileName = fileName;
    m_definition.Dirty = dirty;
    m_data.availableFields() = state.availableFields;
    applyStoredWidths();
    rebuildReport();
}

void ReportSession::changeDefinition(
    const QString& description, const std::function<void(ReportDefinition&, QStringList&)>& change)
{
    const GridChange gridChange(*this);
    const DesignState before = designState();
    change(m_definition, m_data.availableFields());
    m_definition.Dirty = true;
    applyStoredWidths();
    rebuildReport();
    m_history.record(description, before, designState());
}

void ReportSession::pumpEvents()
{
    if (m_eventPump)
        m_eventPump();
    else if (QCoreApplication::instance())
        QCoreApplication::processEvents();
}

void ReportSession::rebuildReport()
{
    if (!m_data.RecordSourceOpen())
        return;
    if (m_building) {
        m_rebuildRequested = true;
        return;
    }
    const GridChange change(*this);
    const bool workingView = !m_data.UnlimitedRows();
    do {
        m_building = true;
        m_rebuildRequested = false;
        Q_EMIT busyChanged(true);
        UpdateStatus(m_strings.text(Message::UPDATINGREPORT) + QStringLiteral("..."));
        if (workingView) {
            pumpEvents();
            if (m_rebuildRequested)
                continue;
        }
        buildReportGrid(m_data.grid(), m_definition, m_collator);
        Q_EMIT reportBuilt();
        if (workingView)
            pumpEvents();
    } while (m_rebuildRequested);
    UpdateStatus(QString());
    m_building = false;
    Q_EMIT busyChanged(false);
}

void ReportSession::applyStoredWidths()
{
    OutlineGrid& grid = m_data.grid();
    for (int c = 0; c < grid.columnCount(); ++c) {
        const int field = FindField(m_definition.fields, grid.column(c).title);
        if (field >= 0 && !grid.column(c).title.isEmpty())
            grid.column(c).width = std::max(0.0f, m_definition.fields[field].Width);
    }
}

void ReportSession::reloadData()
{
    const GridChange change(*this);
    m_data.LoadRowsIntoGrid();
    applyStoredWidths();
    rebuildReport();
    UpdateStatus(m_data.readError());
}

void ReportSession::resizeColumn(int gridColumn, float width)
{
    const DesignState before = designState();
    OutlineGrid& grid = m_data.grid();
    if (width > 0 && gridColumn >= 0 && gridColumn < grid.columnCount()) {
        grid.column(gridColumn).width = width;
        const int field = FindField(m_definition.fields, grid.column(gridColumn).title);
        if (field >= 0)
            m_definition.fields[field].Width = width;
    }
    rebuildReport();
    m_definition.Dirty = true;
    m_history.record(QStringLiteral("Column Width"), before, designState());
}

std::vector<double> ReportSession::columnWidths(const FontCatalog& fonts) const
{
    return reportColumnWidths(m_data.grid(), m_definition, fonts,
                              FormatLocale::fromQLocale(QLocale()));
}

double ReportSession::printableWidth(const PageSetup& page) const
{
    PageSetup laidOut = page;
    applyPageSettings(laidOut, m_definition.global);
    return laidOut.printableWidth();
}

bool ReportSession::fitColumns(const PageSetup& page, const FontCatalog& fonts)
{
    const std::optional<std::vector<double>> fitted =
        fitColumnsToPage(columnWidths(fonts), printableWidth(page));
    if (!fitted)
        return false;
    OutlineGrid& grid = m_data.grid();
    changeDefinition(QStringLiteral("Fit Report to Page"), [&](ReportDefinition& definition,
                                                               QStringList&) {
        for (size_t c = 0; c < fitted->size(); ++c) {
            GridColumn& column = grid.column(grid.reportColumns().at(static_cast<qsizetype>(c)));
            // A column without a field entry keeps its width in the grid.
            column.width = static_cast<float>((*fitted)[c]);
            const int field = FindField(definition.fields, column.title);
            if (field >= 0)
                definition.fields[field].Width = column.width;
        }
    });
    return true;
}

void ReportSession::RenderReport(PageDocument& document)
{
    GridBodyRows rows(m_data.grid(), m_definition.styles, FormatLocale::fromQLocale(QLocale()));
    renderRows(document, rows);
}

TokenContext ReportSession::tokenContext() const
{
    TokenContext context;
    context.databaseName = m_data.DatabaseShortName();
    context.recordSource = m_data.RecordSourceName();
    context.reportFileName = m_definition.CurrentFileName;
    context.clock = m_clock;
    context.locale = FormatLocale::fromQLocale(QLocale());
    return context;
}

void ReportSession::renderRows(PageDocument& document, BodyRows& rows)
{
    Q_EMIT busyChanged(true);
    ReportRenderer renderer(m_definition, m_data.grid(), tokenContext());
    renderer.setWarningHandler([this](const QString& text) { Q_EMIT renderWarning(text); });

    const PageHook progress = document.addNewPageHook([this](PageDocument& d) {
        Q_EMIT pageStarted(d.PageCount());
        UpdateStatus(m_strings.text(Message::GENERATINGPAGE) + u' ' +
                     QString::number(d.PageCount()) + QStringLiteral("..."));
        if (d.Error > 0) {
            d.stop();
            tellUser(m_strings.text(Message::COULDNOTGENERATEREPORT), PromptIcon::Warning);
        }
    });
    const PageHook finished =
        document.addEndDocHook([this](PageDocument&) { UpdateStatus(QString()); });
    renderer.RenderReport(document, rows);
    Q_EMIT reportFinished(document.PageCount());
    Q_EMIT busyChanged(false);
}

void ReportSession::renderFullReport(PageDocument& document)
{
    UpdateStatus(m_strings.text(Message::GENERATINGFULLREPORT));
    // A database that sorts the records hands them over in report order, and the report is
    // laid out as they stream in; otherwise every record is loaded and sorted here.
    if (m_data.RecordSourceOpen() && m_data.CurrentDatabase() && !m_data.hostRecordset()) {
        const std::unique_ptr<StreamedBodyRows> streamed = StreamedBodyRows::open(
            *m_data.CurrentDatabase(), m_data.RecordSourceName(), m_data.grid(), m_definition,
            m_collator, FormatLocale::fromQLocale(QLocale()));
        if (streamed) {
            renderRows(document, *streamed);
            stopOnReadError(document, streamed->readError());
            return;
        }
    }
    const GridChange change(*this);
    m_data.setUnlimitedRows(true);
    m_data.LoadRowsIntoGrid();
    applyStoredWidths();
    rebuildReport();
    if (m_data.readError().isEmpty())
        RenderReport(document);
    stopOnReadError(document, m_data.readError());
    m_data.setUnlimitedRows(false);
}

void ReportSession::stopOnReadError(PageDocument& document, const QString& readError)
{
    if (readError.isEmpty())
        return;
    document.stop();
    UpdateStatus(QString());
    tellUser(readError, PromptIcon::Warning);
}

} // namespace tabulor
