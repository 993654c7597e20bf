#pragma once

#include "component/DesignHistory.h"
#include "component/Prompt.h"
#include "definition/DefinitionFile.h"
#include "definition/ReportDefinition.h"
#include "localisation/CaptionRegistry.h"
#include "localisation/StringTable.h"
#include "production/pages/PageDocument.h"
#include "production/report/ReportData.h"
#include "production/report/Tokens.h"

#include <QCollator>
#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tabulor {

class BodyRows;
class FontCatalog;

// Everything one report designer works on: the definition, its data, the string table and
// the way messages reach the user. Each component creates one; there is no other state.
class ReportSession : public QObject
{
    Q_OBJECT

public:
    // Messages go to prompt (stderr when none is given).
    explicit ReportSession(Prompt* prompt = nullptr);

    ReportDefinition& definition() { return m_definition; }
    const ReportDefinition& definition() const { return m_definition; }
    ReportData& data() { return m_data; }
    const ReportData& data() const { return m_data; }
    StringTable& strings() { return m_strings; }
    const StringTable& strings() const { return m_strings; }
    // The windows whose captions a string file sets, as they attach themselves.
    CaptionRegistry& captions() { return m_captions; }
    Prompt& prompt() { return *m_prompt; }
    // Whether messages go to standard error because nobody gave a prompt; a window that opens
    // then shows them instead (setPrompt), and gives them back (setPrompt(nullptr)) as it goes.
    bool hasDefaultPrompt() const { return m_prompt == &m_stderrPrompt; }
    void setPrompt(Prompt* prompt) { m_prompt = prompt ? prompt : &m_stderrPrompt; }

    // The settings file with the user's default look (and the designer's own keys).
    QString settingsPath() const { return m_settingsPath; }
    void setSettingsPath(const QString& path) { m_settingsPath = path; }

    // What the user may do with reports (a zrAccessModeSettings value, or any other number a
    // host set, which then allows no more than zrUse).
    qint32 accessMode() const { return m_accessMode; }
    void setAccessMode(qint32 mode) { m_accessMode = mode; }

    // Forgets the current file, data source and layout; the look of the report stays.
    void ResetDefinition();

    // What loading the designer does first: the built-in look, the user's default look over
    // it, then the message texts.
    void loadDesigner();
    // Reads the string file over the built-in texts; with applyCaptions its captions go to
    // the windows registered in captions(). A fault in the file is told, and the texts read
    // before it stay.
    void loadStrings(bool applyCaptions);
    // The look a new report starts with: the built-in one and the user's default over it.
    void applyDefaultLook();
    // Writes the current look as the user's default; false (and a message) when it fails.
    bool SaveDefaultStyle();

    // Loads a definition file into the current definition and opens its data. False when
    // the file is no definition, a value in it is bad or its database cannot be opened; the
    // definition is then as it was, unless the data source had already been replaced. With
    // a database given, it takes the place of the one the file names.
    [[nodiscard]] bool OpenReportFile(const QString& path,
                                      const std::optional<QString>& database = std::nullopt);
    // Why the last OpenReportFile failed on a value, if it did.
    const std::optional<DefinitionReadError>& lastReadError() const { return m_lastReadError; }
    // Why the last OpenReportFile could not read the file at all (it does not exist, is no
    // regular file or is too large), if that was why it failed.
    const std::optional<QString>& lastFileError() const { return m_lastFileError; }

    // Saves the definition; on failure the user is told and false returned.
    [[nodiscard]] bool saveReportFile(const QString& path);

    // "Invalid Data File, please try another." with the path, as shown for unreadable files.
    QString invalidFileMessage(const QString& path) const;
    void tellUser(const QString& text, PromptIcon icon = PromptIcon::None);

    // Status and progress text; empty for the default status.
    void UpdateStatus(const QString& text);

    // Opens a database and record source and rebuilds the report over it; `opened` is the
    // database when the caller has opened it already.
    void OpenDataSource(const QString& databasePath, const QString& recordSourceName,
                        const QString& definitionPath = QString(),
                        std::unique_ptr<DataSource> opened = nullptr);
    // A report begun afresh on a database, or on none: no file, no record source, no fields
    // and nothing to undo. The data source is left to the caller.
    void startReport(const QString& databaseName);
    // The user picked another record source: the field table starts again from its fields,
    // with nothing grouped or placed.
    void selectRecordSource(const QString& name);
    // Rebuilds the report grid from the definition. A request while a rebuild runs (from the
    // events it lets through) makes the running one start over instead of nesting.
    void rebuildReport();
    bool Building() const { return m_building; }
    bool RebuildRequested() const { return m_rebuildRequested; }
    // What lets pending events through during a rebuild of the working view; by default the
    // application's event loop, if there is one.
    void setEventPump(std::function<void()> pump) { m_eventPump = std::move(pump); }
    // Loads the record source's rows again and rebuilds the report over them.
    void reloadData();

    // Every change that the designer's windows make to the report goes through here, so that
    // it can be undone: change edits the definition (and the fields not yet placed in the
    // groups or details); the definition is then marked changed, the grid takes the stored
    // widths and the report is rebuilt.
    void changeDefinition(const QString& description,
                          const std::function<void(ReportDefinition&, QStringList&)>& change);
    // The changes made, to undo and redo. Opening or starting a report forgets them; saving
    // marks where the file stands.
    DesignHistory& history() { return m_history; }
    DesignState designState() const;
    // The user dragged a grid column to a new width (twips).
    void resizeColumn(int gridColumn, float width);

    // The widths (twips, in report column order) the report's columns are laid out with in
    // fonts, and the printable width they have on page as the report's settings set it up.
    std::vector<double> columnWidths(const FontCatalog& fonts) const;
    double printableWidth(const PageSetup& page) const;
    // Narrows the report's columns so that they fit the printable width of page (see
    // fitColumnsToPage) and stores their widths in the field table. False when they are left
    // as they are: they fit already, or the widest is the first.
    bool fitColumns(const PageSetup& page, const FontCatalog& fonts);

    // Renders the report into a document: the title and the rows of the grid as it stands,
    // then, when the document asks for them, the page header and footer with the final page
    // count. Progress goes to the status; a document error stops it with a message.
    void RenderReport(PageDocument& document);
    // Renders the report over every record. A database that can sort the record source
    // streams the records in report order and the working view stays as it is; otherwise
    // every record is loaded and the report rebuilt over them, and the working view's partial
    // data is not loaded back. A record source that cannot be read to the end (a damaged
    // database) stops the document, and the user is told why: a report over part of the
    // records is never handed out as the whole.
    void renderFullReport(PageDocument& document);

    // What the tokens of the title, headers and footers stand for in this report: its
    // database, record source and file, the clock and the user's locale; no page count yet.
    TokenContext tokenContext() const;

    // Where dates and times in titles, headers and footers come from.
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }
    const std::function<QDateTime()>& clock() const { return m_clock; }
Q_SIGNALS:
    void statusChanged(const QString& text);
    void busyChanged(bool busy);
    // A rebuild pass has laid out the report.
    void reportBuilt();
    // The grid is about to be loaded again or rebuilt, and then has been: in between it may be
    // half made (events are let through meanwhile), and nothing should show it.
    void gridAboutToChange();
    void gridChanged();
    // Rendering began a page (1-based) and, once it has ended, finished the document.
    void pageStarted(int page);
    void reportFinished(int pageCount);
    // Something the user should know about the report being rendered, which does not stop
    // it: a value that cannot be laid out and what is used instead. The designer shows it in
    // its status line, the command line on standard error.
    void renderWarning(const QString& text);

private:
    // RenderReport with the body rows given.
    void renderRows(PageDocument& document, BodyRows& rows);
    // Stops the document and tells the user when the records stopped short for readError.
    void stopOnReadError(PageDocument& document, const QString& readError);
    bool ReadReportFile(const QString& path, const ProfileFile& file,
                        const std::optional<QString>& database);
    // The database a definition names, or null after telling the user why it cannot be opened.
    std::unique_ptr<DataSource> openCheckedDatabase(const QString& name,
                                                    const QString& definitionPath);
    void pumpEvents();
    // Marks a change of the grid for as long as it lives; changes may nest.
    class GridChange;
    friend class GridChange;
    // Gives the grid's columns the widths the field table stores (0: fit to the content).
    void applyStoredWidths();
    // Puts a design back, opening its record source again where it differs.
    void restoreDesign(const DesignState& state);

    ReportDefinition m_definition;
    ReportData m_data;
    StringTable m_strings;
    CaptionRegistry m_captions;
    StderrPrompt m_stderrPrompt;
    Prompt* m_prompt;
    QString m_settingsPath;
    qint32 m_accessMode = 0;
    std::optional<DefinitionReadError> m_lastReadError;
    std::optional<QString> m_lastFileError;
    QCollator m_collator;
    std::function<void()> m_eventPump;
    std::function<QDateTime()> m_clock = [] { return QDateTime::currentDateTime(); };
    bool m_building = false;
    bool m_rebuildRequested = false;
    int m_gridChanges = 0;
    DesignHistory m_history{[this](const DesignState& state) { restoreDesign(state); }};
};

} // namespace tabulor
