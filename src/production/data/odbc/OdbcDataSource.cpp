#include "production/data/odbc/OdbcDataSource.h"

#include "production/base/ErrorText.h"
#include "production/data/odbc/OdbcConnection.h"
#include "production/data/odbc/OdbcRecordset.h"

#include <QSet>

#include <sql.h>
#include <sqlext.h>

namespace tabulor {

namespace {

// The kind of a catalog entry by its table type; nullopt for system and temporary objects.
std::optional<RecordSourceKind> kindOfTableType(const QString& type)
{
    const QString upper = type.toUpper();
    if (upper == QLatin1String("TABLE"))
        return RecordSourceKind::Table;
    if (upper == QLatin1String("VIEW") || upper == QLatin1String("MATERIALIZED VIEW") ||
        upper == QLatin1String("MATVIEW"))
        return RecordSourceKind::View;
    if (upper == QLatin1String("FOREIGN TABLE") || upper == QLatin1String("SYNONYM") ||
        upper == QLatin1String("ALIAS"))
        return RecordSourceKind::Linked;
    return std::nullopt;
}

} // namespace

struct OdbcDataSource::Listed
{
    OdbcTable table;
    RecordSourceKind kind;
};

std::unique_ptr<OdbcDataSource> OdbcDataSource::open(const QString& connection, QString* error)
{
    std::unique_ptr<OdbcConnection> catalog = OdbcConnection::open(connection, error);
    if (!catalog)
        return nullptr;
    return std::unique_ptr<OdbcDataSource>(new OdbcDataSource(connection, std::move(catalog)));
}

OdbcDataSource::OdbcDataSource(QString connection, std::unique_ptr<OdbcConnection> catalog)
    : m_connection(std::move(connection)), m_catalog(std::move(catalog))
{
}

OdbcDataSource::~OdbcDataSource() = default;

QList<OdbcDataSource::Listed> OdbcDataSource::tables() const
{
    const OdbcStatement statement = m_catalog->statement(nullptr);
    // Every schema and table: some drivers list only the current schema when none is given.
    SQLCHAR any[] = "%";
    if (!statement || !SQL_SUCCEEDED(SQLTables(statement.get(), nullptr, 0, any, SQL_NTS, any,
                                               SQL_NTS, nullptr, 0)))
        return {};
    QList<Listed> tables;
    QList<Listed> views;
    QSet<QString> seen;
    while (SQL_SUCCEEDED(SQLFetch(statement.get()))) {
        // Columns 2 to 4 of the catalog: schema, name, type.
        const QString schema = odbcText(statement.get(), 1).value_or(QString());
        const std::optional<QString> name = odbcText(statement.get(), 2);
        const std::optional<RecordSourceKind> kind =
            kindOfTableType(odbcText(statement.get(), 3).value_or(QString()));
        if (!name || !kind || name->startsWith(QLatin1String("~sq_")) || seen.contains(*name))
            continue;
        seen.insert(*name);
        (*kind == RecordSourceKind::View ? views : tables).append({{schema, *name}, *kind});
    }
    m_catalog->endTransaction();
    return tables + views;
}

QList<RecordSourceEntry> OdbcDataSource::entriesOf(const QList<Listed>& listed)
{
    QList<RecordSourceEntry> entries;
    for (const Listed& source : listed)
        entries.append({source.table.name, source.kind});
    return entries;
}

QList<RecordSourceEntry> OdbcDataSource::recordSources()
{
    return entriesOf(tables());
}

std::optional<OdbcTable> OdbcDataSource::table(const QString& name, QString* error) const
{
    const QList<Listed> listed = tables();
    const QString stored = matchingRecordSourceName(entriesOf(listed), name);
    for (const Listed& source : listed) {
        if (!stored.isEmpty() && source.table.name == stored)
            return source.table;
    }
    setError(error, QStringLiteral("'%1' is not a table or view of the database.").arg(name));
    return std::nullopt;
}

std::unique_ptr<Recordset> OdbcDataSource::openRecordSource(const QString& name,
                                                            std::optional<qint64> rowLimit,
                                                            QString* error)
{
    const std::optional<OdbcTable> found = table(name, error);
    if (!found)
        return nullptr;
    return OdbcRecordset::open(m_connection, *found, rowLimit, error);
}

std::optional<qint64> OdbcDataSource::countRows(const QString& name)
{
    const std::optional<OdbcTable> found = table(name, nullptr);
    const std::optional<QString> reference =
        found ? m_catalog->tableReference(found->schema, found->name) : std::nullopt;
    const OdbcStatement statement = reference ? m_catalog->statement(nullptr) : nullptr;
    if (!statement)
        return std::nullopt;
    QString sql = QStringLiteral("SELECT COUNT(*) FROM ") + *reference;
    std::optional<qint64> count;
    SQLBIGINT rows = 0;
    SQLLEN indicator = 0;
    if (SQL_SUCCEEDED(odbcExecute(statement.get(), sql)) &&
        SQL_SUCCEEDED(SQLFetch(statement.get())) &&
        SQL_SUCCEEDED(
            SQLGetData(statement.get(), 1, SQL_C_SBIGINT, &rows, sizeof rows, &indicator)) &&
        indicator != SQL_NULL_DATA)
        count = rows;
    m_catalog->endTransaction();
    return count;
}

} // namespace tabulor
