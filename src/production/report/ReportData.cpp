#include "production/report/ReportData.h"
#include "production/databases/OpenDatabase.h"

#include "production/data/DatabaseLocation.h"

namespace tabulor {

void ReportData::reset()
{
    m_database.reset();
    m_hostRecordset = nullptr;
    m_recordSourceOpen = false;
    m_recordSources.clear();
    m_selectedRecordSource = -1;
    m_availableFields.clear();
}

void ReportData::OpenDataSource(const QString& databasePath, const QString& recordSourceName,
                                const QString& definitionPath, std::unique_ptr<DataSource> opened)
{
    m_recordSources.clear();
    m_selectedRecordSource = -1;
    m_availableFields.clear();
    m_database.reset();
    m_recordSourceOpen = false;
    m_databasePath = databasePath;
    m_databaseShortName.clear();
    m_recordSourceName = recordSourceName;
    m_definitionPath = definitionPath;

    if (m_hostRecordset) {
        m_recordSourceOpen = true;
    } else if (!databasePath.isEmpty()) {
        QString error;
        m_database = opened
                         ? std::move(opened)
                         : openDatabase(resolveDatabasePath(databasePath, definitionPath), &error);
        if (!m_database) {
            m_databasePath.clear();
            m_recordSourceName.clear();
        } else {
            m_databaseShortName = databaseShortName(databasePath);
            // Loading the rows below tells whether the record source can be read at all.
            m_recordSourceOpen = !recordSourceName.isEmpty();
            m_recordSources = m_database->recordSources();
            for (int i = 0; i < m_recordSources.size(); ++i) {
                if (m_recordSources.at(i).name == recordSourceName) {
                    m_selectedRecordSource = i;
                    break;
                }
            }
        }
    }

    LoadRowsIntoGrid();
    for (int c = 0; c < m_grid.columnCount(); ++c)
        m_availableFields.append(m_grid.column(c).title);
}

void ReportData::LoadRowsIntoGrid()
{
    if (m_hostRecordset) {
        LoadRowsFromRecordset();
        return;
    }
    m_grid.clear();
    m_totalRowCount = m_loadedRowCount = 1;
    m_recordSourceError.clear();
    m_readError.clear();
    if (!m_recordSourceOpen || !m_database)
        return;

    // The grid counts its title row, so the working view holds the title and 249 records.
    const qsizetype recordLimit = m_unlimitedRows ? -1 : kWorkingViewRows - 1;
    QString error;
    std::unique_ptr<Recordset> records = m_database->openRecordSource(
        m_recordSourceName, recordLimit < 0 ? std::nullopt : std::optional<qint64>(recordLimit),
        &error);
    if (!records) {
        m_recordSourceOpen = false;
        m_recordSourceError = error;
        return;
    }
    copyRows(*records, recordLimit);
    const qint64 loadedRecords = m_grid.recordCount();
    qint64 totalRecords = loadedRecords;
    if (recordLimit >= 0 && loadedRecords == recordLimit)
        totalRecords = m_database->countRows(m_recordSourceName).value_or(loadedRecords);
    m_totalRowCount = totalRecords + 1;
    m_loadedRowCount = loadedRecords + 1;
}

void ReportData::LoadRowsFromRecordset()
{
    m_grid.clear();
    m_totalRowCount = m_loadedRowCount = 0;
    m_readError.clear();
    if (!m_recordSourceOpen || !m_hostRecordset)
        return;
    Recordset& source = *m_hostRecordset;
    copyRows(source, m_unlimitedRows ? -1 : kWorkingViewRows);
    const qint64 copied = m_grid.recordCount();
    m_loadedRowCount = copied;
    m_totalRowCount = std::max(source.recordCount(), copied);
    if (copied < kWorkingViewRows)
        m_totalRowCount = copied;
}

void ReportData::copyRows(Recordset& source, qsizetype recordLimit)
{
    QList<GridColumn> columns;
    const int fieldCount = std::max(source.fieldCount(), 0);
    for (int i = 0; i < fieldCount; ++i) {
        GridColumn column;
        column.title = source.fieldName(i);
        column.type = source.fieldType(i);
        column.alignment = AlignmentForFieldType(column.type);
        columns.append(column);
    }
    m_grid.setColumns(columns);

    // A failed move ends the copy; the rows copied so far stay, and a reason beyond the end
    // of the rows is kept.
    bool ok = source.moveFirst();
    while (ok && !source.atEnd() && (recordLimit < 0 || m_grid.recordCount() < recordLimit)) {
        m_grid.appendRow(source);
        ok = source.moveNext();
    }
    m_readError = source.readError();
}

} // namespace tabulor
