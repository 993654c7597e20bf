#pragma once

#include "production/data/DataSource.h"
#include "production/data/jet/JetCatalog.h"

#include <QByteArrayView>

#include <functional>
#include <memory>

namespace tabulor {

class JetHandle;

// A Jet or ACE database file (.mdb, .accdb), opened read-only. Record sources are its tables
// and linked tables, then its saved queries.
class JetDataSource final : public DataSource
{
public:
    // Whether the first bytes of a file are those of a Jet or ACE database.
    static bool recognises(QByteArrayView header);

    // Opens the server of a table linked through ODBC, given the link's connection text.
    using OdbcOpener =
        std::function<std::unique_ptr<DataSource>(const QString& connection, QString* error)>;

    // Null with *error set when the file is missing, unreadable, damaged or no Jet database.
    // Tables linked through ODBC are opened with odbc; without it they cannot be read.
    static std::unique_ptr<JetDataSource> open(const QString& path, QString* error,
                                               OdbcOpener odbc = nullptr);

    ~JetDataSource() override;

    QList<RecordSourceEntry> recordSources() override;
    // Tables are read straight from the file; a linked table from the file or server it
    // points to; a select query runs over copies of the tables it reads.
    std::unique_ptr<Recordset> openRecordSource(const QString& name, std::optional<qint64> rowLimit,
                                                QString* error) override;
    // From the table's definition for tables and linked tables; queries are not counted.
    std::optional<qint64> countRows(const QString& name) override;

private:
    JetDataSource(std::shared_ptr<JetHandle> handle, JetCatalog catalog, int linkDepth,
                  OdbcOpener odbc);

    static std::unique_ptr<JetDataSource> open(const QString& path, int linkDepth, OdbcOpener odbc,
                                               QString* error);
    // The data source that a linked table's rows come from.
    std::unique_ptr<DataSource> openLinkTarget(const JetObject& link, QString* error) const;

    std::shared_ptr<JetHandle> m_handle;
    JetCatalog m_catalog;
    // How many links were followed to reach this file, so that links in a circle end.
    int m_linkDepth;
    OdbcOpener m_odbc;
    // How many saved queries are being opened, each reading the next, so that queries that
    // read each other in a circle end.
    int m_queryNesting = 0;
};

} // namespace tabulor
