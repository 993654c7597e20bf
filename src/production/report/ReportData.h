#pragma once

#include "production/data/DataSource.h"
#include "production/grid/OutlineGrid.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace tabulor {

// The data behind the current report: the open database and record source, or the host's
// recordset, the rows loaded into the grid and the lists the layout window shows.
class ReportData
{
public:
    // The designer's working view loads at most this many grid rows.
    static constexpr qsizetype kWorkingViewRows = 250;

    // Replaces the current source. definitionPath locates a database given by a relative path
    // or found beside the definition; `opened` is that database when the caller has opened it
    // already. A database or record source that cannot be opened is not reported here: the
    // grid stays empty and RecordSourceOpen() false.
    void OpenDataSource(const QString& databasePath, const QString& recordSourceName,
                        const QString& definitionPath = QString(),
                        std::unique_ptr<DataSource> opened = nullptr);

    // Fills the grid from the current source: at most 250 rows unless UnlimitedRows is set. A
    // record source that cannot be opened leaves RecordSourceOpen() false; one that cannot be
    // read to the end keeps the rows read before, and readError() says why.
    void LoadRowsIntoGrid();
    void LoadRowsFromRecordset();

    // Drops the database, the recordset and the host's recordset; clears the lists.
    void reset();

    void setHostRecordset(Recordset* recordset) { m_hostRecordset = recordset; }
    Recordset* hostRecordset() const { return m_hostRecordset; }

    bool RecordSourceOpen() const { return m_recordSourceOpen; }
    // Why the record source could not be opened when the rows were last loaded, as the
    // database told it; empty when it opened or was not tried.
    const QString& recordSourceError() const { return m_recordSourceError; }
    // Why the rows stopped before the end of the record source when they were last loaded
    // (the database is damaged or could not be read to the end); empty when none stopped so.
    const QString& readError() const { return m_readError; }
    bool UnlimitedRows() const { return m_unlimitedRows; }
    void setUnlimitedRows(bool unlimited) { m_unlimitedRows = unlimited; }

    const QString& DatabasePath() const { return m_databasePath; }
    const QString& DatabaseShortName() const { return m_databaseShortName; }
    const QString& RecordSourceName() const { return m_recordSourceName; }
    // The definition file whose folder a relative database path was found from.
    const QString& definitionPath() const { return m_definitionPath; }
    DataSource* CurrentDatabase() const { return m_database.get(); }

    // Both counts follow the grid: through a database they count the title row too, through
    // a host recordset they count records.
    qint64 TotalRowCount() const { return m_totalRowCount; }
    qint64 LoadedRowCount() const { return m_loadedRowCount; }

    // The record sources offered to the user and the selected one (-1 for none).
    const QList<RecordSourceEntry>& recordSources() const { return m_recordSources; }
    int selectedRecordSource() const { return m_selectedRecordSource; }
    // The record source's fields not yet placed in the groups or details.
    QStringList& availableFields() { return m_availableFields; }
    const QStringList& availableFields() const { return m_availableFields; }

    OutlineGrid& grid() { return m_grid; }
    const OutlineGrid& grid() const { return m_grid; }

private:
    void copyRows(Recordset& source, qsizetype recordLimit);

    std::unique_ptr<DataSource> m_database;
    Recordset* m_hostRecordset = nullptr;
    bool m_recordSourceOpen = false;
    bool m_unlimitedRows = false;
    QString m_databasePath;
    QString m_definitionPath;
    QString m_databaseShortName;
    QString m_recordSourceName;
    QString m_recordSourceError;
    QString m_readError;
    qint64 m_totalRowCount = 0;
    qint64 m_loadedRowCount = 0;
    QList<RecordSourceEntry> m_recordSources;
    int m_selectedRecordSource = -1;
    QStringList m_availableFields;
    OutlineGrid m_grid;
};

} // namespace tabulor
