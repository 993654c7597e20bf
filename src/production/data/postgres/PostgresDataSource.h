#pragma once

#include "production/data/DataSource.h"

#include <memory>

namespace tabulor {

class PostgresConnection;
struct PostgresRelation;

// A database on a PostgreSQL server, read through libpq in read-only transactions. Its record
// sources are the tables (foreign tables as linked ones), then the views, that an unqualified
// name reaches through the search path and that the user may read: in the order of the
// search path's schemas, then by name.
class PostgresDataSource final : public DataSource
{
public:
    // address: postgresql://user@host:port/database, libpq's URI form. Null with *error set
    // when the address is malformed or holds a password, or the server cannot be reached or
    // refuses the login.
    static std::unique_ptr<PostgresDataSource> open(const QString& address, QString* error);

    ~PostgresDataSource() override;

    QList<RecordSourceEntry> recordSources() override;
    std::unique_ptr<Recordset> openRecordSource(const QString& name, std::optional<qint64> rowLimit,
                                                QString* error) override;
    std::optional<qint64> countRows(const QString& name) override;
    // Sorted by the server; see postgresSortedQuery() for what it can sort.
    std::unique_ptr<Recordset> openSorted(const QString& name, const QList<SortField>& order,
                                          const QCollator& collator, QString* error) override;

private:
    PostgresDataSource(QString address, std::unique_ptr<PostgresConnection> catalog);

    // The listed table or view that a name opens (see matchingRecordSourceName) with its
    // columns; nullopt with *error set for any other name.
    std::optional<PostgresRelation> relation(const QString& name, QString* error);

    QString m_address;
    std::unique_ptr<PostgresConnection> m_catalog;
};

} // namespace tabulor
