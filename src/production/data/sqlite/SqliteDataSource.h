#pragma once

#include "production/data/DataSource.h"

#include <memory>

namespace tabulor {

class SqliteConnection;

// A database file of the embedded engine, opened read-only. Record sources are its tables,
// then its views, each in the order of the catalog.
class SqliteDataSource final : public DataSource
{
public:
    // Null with *error set when the file is missing, unreadable, damaged or no database.
    static std::unique_ptr<SqliteDataSource> open(const QString& path, QString* error);

    ~SqliteDataSource() override;

    // Leaves out the engine's internal tables (sqlite_...) and the names beginning with "~sq_"
    // (exactly so: "~SQ_" is listed), which hold embedded record sources of forms and reports.
    QList<RecordSourceEntry> recordSources() override;
    std::unique_ptr<Recordset> openRecordSource(const QString& name, std::optional<qint64> rowLimit,
                                                QString* error) override;
    std::optional<qint64> countRows(const QString& name) override;
    // Tables only: a view's rows have no order of their own to keep among ties.
    std::unique_ptr<Recordset> openSorted(const QString& name, const QList<SortField>& order,
                                          const QCollator& collator, QString* error) override;

private:
    explicit SqliteDataSource(std::shared_ptr<SqliteConnection> connection);

    std::shared_ptr<SqliteConnection> m_connection;
};

} // namespace tabulor
