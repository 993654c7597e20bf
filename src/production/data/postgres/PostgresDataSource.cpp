#include "production/data/postgres/PostgresDataSource.h"

#include "production/base/ErrorText.h"
#include "production/data/postgres/PostgresConnection.h"
#include "production/data/postgres/PostgresRecordset.h"
#include "production/data/postgres/PostgresSortOrder.h"

#include <libpq-fe.h>

namespace tabulor {

namespace {

// Catalog queries and counts give up after this long rather than hold up the designer.
constexpr int CatalogTimeoutMs = 30000;

// What a user may pick: ordinary, partitioned and foreign tables, views and materialized
// views (not the partitions of a table), in a schema of the search path, readable by the user.
const QByteArray Listed = "c.relkind IN ('r', 'p', 'f', 'v', 'm') AND NOT c.relispartition "
                          "AND n.nspname = ANY (pg_catalog.current_schemas(false)) "
                          "AND pg_catalog.has_table_privilege(c.oid, 'SELECT')";

QString text(const pg_result* result, int row, int column)
{
    return QString::fromUtf8(PQgetvalue(result, row, column), PQgetlength(result, row, column));
}

QString notARecordSource(const QString& name)
{
    return QStringLiteral("'%1' is not a table or view of the database.").arg(name);
}

} // namespace

std::unique_ptr<PostgresDataSource> PostgresDataSource::open(const QString& address, QString* error)
{
    std::unique_ptr<PostgresConnection> catalog =
        PostgresConnection::open(address, CatalogTimeoutMs, error);
    if (!catalog)
        return nullptr;
    return std::unique_ptr<PostgresDataSource>(new PostgresDataSource(address, std::move(catalog)));
}

PostgresDataSource::PostgresDataSource(QString address, std::unique_ptr<PostgresConnection> catalog)
    : m_address(std::move(address)), m_catalog(std::move(catalog))
{
}

PostgresDataSource::~PostgresDataSource() = default;

QList<RecordSourceEntry> PostgresDataSource::recordSources()
{
    // A relation hidden by one of the same name earlier in the search path is left out: its
    // name reaches the other one.
    const PostgresResult result = m_catalog->run(
        "SELECT c.relname, c.relkind FROM pg_catalog.pg_class c "
        "JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
        "WHERE " +
            Listed +
            " AND c.oid = pg_catalog.to_regclass(pg_catalog.quote_ident(c.relname)) "
            "ORDER BY c.relkind IN ('v', 'm'), "
            "pg_catalog.array_position(pg_catalog.current_schemas(false), n.nspname), "
            "c.relname COLLATE \"C\"",
        {}, nullptr);
    QList<RecordSourceEntry> entries;
    for (int row = 0; result && row < PQntuples(result.get()); ++row) {
        const char kind = *PQgetvalue(result.get(), row, 1);
        entries.append({text(result.get(), row, 0), kind == 'f' ? RecordSourceKind::Linked
                                                    : kind == 'v' || kind == 'm'
                                                        ? RecordSourceKind::View
                                                        : RecordSourceKind::Table});
    }
    return entries;
}

std::optional<PostgresRelation> PostgresDataSource::relation(const QString& name, QString* error)
{
    // The server's text cannot hold a zero character; the library would cut the name there.
    if (name.isEmpty() || name.contains(QChar(0))) {
        setError(error, notARecordSource(name));
        return std::nullopt;
    }
    // The name is a parameter and resolved as the server resolves an unqualified name; the
    // comparison with relname refuses a long name that the server would have shortened.
    QString problem;
    const PostgresResult result =
        m_catalog->run("SELECT n.nspname, c.relname, a.attname, "
                       "COALESCE(NULLIF(t.typbasetype, 0), a.atttypid), c.relkind IN ('r', 'm') "
                       "FROM pg_catalog.pg_class c "
                       "JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
                       "LEFT JOIN pg_catalog.pg_attribute a "
                       "ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped "
                       "LEFT JOIN pg_catalog.pg_type t ON t.oid = a.atttypid "
                       "WHERE c.oid = pg_catalog.to_regclass(pg_catalog.quote_ident($1::text)) "
                       "AND c.relname::text = $1::text AND " +
                           Listed + " ORDER BY a.attnum",
                       {name.toUtf8()}, &problem);
    if (result && PQntuples(result.get()) == 0) {
        // Looked for in the list only when the name as given finds nothing.
        const QString stored = matchingRecordSourceName(recordSources(), name);
        if (!stored.isEmpty() && stored != name)
            return relation(stored, error);
    }
    if (!result || PQntuples(result.get()) == 0) {
        setError(error, result ? notARecordSource(name)
                               : QStringLiteral("'%1' cannot be opened: %2").arg(name, problem));
        return std::nullopt;
    }
    PostgresRelation found{text(result.get(), 0, 0),
                           text(result.get(), 0, 1),
                           {},
                           *PQgetvalue(result.get(), 0, 4) == 't'};
    for (int row = 0; row < PQntuples(result.get()); ++row) {
        if (!PQgetisnull(result.get(), row, 2)) {
            found.columns.append({text(result.get(), row, 2), text(result.get(), row, 3).toUInt()});
        }
    }
    return found;
}

std::unique_ptr<Recordset> PostgresDataSource::openRecordSource(const QString& name,
                                                                std::optional<qint64> rowLimit,
                                                                QString* error)
{
    const std::optional<PostgresRelation> found = relation(name, error);
    if (!found)
        return nullptr;
    return PostgresRecordset::open(m_address, *found, rowLimit, error);
}

std::unique_ptr<Recordset> PostgresDataSource::openSorted(const QString& name,
                                                          const QList<SortField>& order,
                                                          const QCollator& collator, QString* error)
{
    const std::optional<PostgresRelation> found = relation(name, error);
    if (!found)
        return nullptr;
    const std::optional<PostgresSortedQuery> sorted =
        postgresSortedQuery(*m_catalog, *found, order, collator, error);
    if (!sorted)
        return nullptr;
    return PostgresRecordset::openSorted(m_address, *found, *sorted, error);
}

std::optional<qint64> PostgresDataSource::countRows(const QString& name)
{
    const std::optional<PostgresRelation> found = relation(name, nullptr);
    if (!found)
        return std::nullopt;
    const PostgresResult result = m_catalog->run("SELECT pg_catalog.count(*) FROM " +
                                                     m_catalog->quotedIdentifier(found->schema) +
                                                     '.' + m_catalog->quotedIdentifier(found->name),
                                                 {}, nullptr);
    if (!result || PQntuples(result.get()) != 1)
        return std::nullopt;
    return QByteArrayView(PQgetvalue(result.get(), 0, 0)).toLongLong();
}

} // namespace tabulor
