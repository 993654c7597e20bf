#pragma once

#include "production/data/DataSource.h"

#include <memory>

namespace tabulor {

class OdbcConnection;
struct OdbcTable;

// A database reached through an ODBC driver. Its record sources are what the driver's catalog
// lists as tables (foreign tables and synonyms as linked ones), then as views, each in the
// driver's order; system tables and the names beginning with "~sq_" are left out. A name
// found in several schemas is listed once and reaches the first of them.
class OdbcDataSource final : public DataSource
{
public:
    // connection: what follows "odbc:" in a definition, a connection string or a data source
    // name. Null with *error set when the driver manager, the driver or the database refuses.
    static std::unique_ptr<OdbcDataSource> open(const QString& connection, QString* error);

    ~OdbcDataSource() override;

    QList<RecordSourceEntry> recordSources() override;
    std::unique_ptr<Recordset> openRecordSource(const QString& name, std::optional<qint64> rowLimit,
                                                QString* error) override;
    std::optional<qint64> countRows(const QString& name) override;

private:
    OdbcDataSource(QString connection, std::unique_ptr<OdbcConnection> catalog);

    struct Listed;
    QList<Listed> tables() const;
    static QList<RecordSourceEntry> entriesOf(const QList<Listed>& listed);
    // The listed table or view that a name opens (see matchingRecordSourceName); nullopt with
    // *error set for any other name.
    std::optional<OdbcTable> table(const QString& name, QString* error) const;

    QString m_connection;
    std::unique_ptr<OdbcConnection> m_catalog;
};

} // namespace tabulor
