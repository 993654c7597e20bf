#include "production/data/sqlite/SqliteDataSource.h"

#include "production/base/FieldType.h"
#include "production/data/sqlite/SqliteConnection.h"
#include "production/data/sqlite/SqliteMergedRecordset.h"
#include "production/data/sqlite/SqliteRecordset.h"
#include "production/data/sqlite/SqliteSortKeys.h"
#include "production/data/sqlite/SqliteValues.h"

#include <sqlite3.h>

namespace tabulor {

namespace {

bool isListed(const QString& name)
{
    return !name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive) &&
           !name.startsWith(QLatin1String("~sq_"), Qt::CaseSensitive);
}

} // namespace

std::unique_ptr<SqliteDataSource> SqliteDataSource::open(const QString& path, QString* error)
{
    std::shared_ptr<SqliteConnection> connection = SqliteConnection::openReadOnly(path, error);
    if (!connection)
        return nullptr;
    return std::unique_ptr<SqliteDataSource>(new SqliteDataSource(std::move(connection)));
}

SqliteDataSource::SqliteDataSource(std::shared_ptr<SqliteConnection> connection)
    : m_connection(std::move(connection))
{
}

SqliteDataSource::~SqliteDataSource() = default;

QList<RecordSourceEntry> SqliteDataSource::recordSources()
{
    const SqliteStatement catalog =
        m_connection->prepare(QStringLiteral("SELECT type, name FROM sqlite_master "
                                             "WHERE type IN ('table', 'view') ORDER BY rowid"),
                              nullptr);
    QList<RecordSourceEntry> tables;
    QList<RecordSourceEntry> views;
    while (catalog && sqlite3_step(catalog.get()) == SQLITE_ROW) {
        const QString name = columnValue(catalog.get(), 1, FieldText).toString();
        if (!isListed(name))
            continue;
        if (columnValue(catalog.get(), 0, FieldText).toString() == QLatin1String("view"))
            views.append({name, RecordSourceKind::View});
        else
            tables.append({name, RecordSourceKind::Table});
    }
    return tables + views;
}

std::unique_ptr<Recordset> SqliteDataSource::openRecordSource(const QString& name,
                                                              std::optional<qint64> rowLimit,
                                                              QString* error)
{
    // Looked up first, so that any other name fails with the same plain message.
    const QString stored = m_connection->recordSourceName(name);
    if (stored.isEmpty()) {
        setError(error, QStringLiteral("'%1' is not a table or view of the database.").arg(name));
        return nullptr;
    }
    return SqliteRecordset::open(m_connection, stored, rowLimit, error);
}

std::optional<qint64> SqliteDataSource::countRows(const QString& name)
{
    const QString stored = m_connection->recordSourceName(name);
    if (stored.isEmpty())
        return std::nullopt;
    return m_connection->countRows(stored);
}

std::unique_ptr<Recordset> SqliteDataSource::openSorted(const QString& name,
                                                        const QList<SortField>& order,
                                                        const QCollator& collator, QString* error)
{
    const QString stored = m_connection->recordSourceName(name);
    if (!recordSources().contains(RecordSourceEntry{stored, RecordSourceKind::Table}))
        return nullptr;
    // The first row types the fields that declare no type, as an unsorted read would.
    const std::unique_ptr<SqliteRecordset> plain =
        SqliteRecordset::open(m_connection, stored, 1, error);
    if (!plain)
        return nullptr;
    QStringList names;
    QList<qint16> types;
    for (int f = 0; f < plain->fieldCount(); ++f) {
        names.append(plain->fieldName(f));
        types.append(plain->fieldType(f));
    }
    // Ties keep the table's own order, by row number, under a name no column hides.
    QString rowid;
    for (const QString& candidate :
         {QStringLiteral("rowid"), QStringLiteral("_rowid_"), QStringLiteral("oid")}) {
        if (!names.contains(candidate, Qt::CaseInsensitive)) {
            rowid = candidate;
            break;
        }
    }
    if (rowid.isEmpty())
        return nullptr;

    std::vector<SqliteSortKeys::Column> columns;
    for (const SortField& field : order) {
        const qsizetype f = names.indexOf(field.name);
        if (f < 0)
            return nullptr;
        columns.push_back(SqliteSortKeys::Column{field.name, types.at(f), field.descending});
    }
    std::shared_ptr<SqliteSortKeys> keys =
        SqliteSortKeys::define(m_connection, stored, rowid, columns, collator, error);
    if (!keys)
        return nullptr;
    const QString key = keys->keySql();
    if (!keys->split())
        return SqliteRecordset::openSorted(m_connection, stored, QString(), 0, key, types,
                                           std::move(keys), error);

    // The engine sorts each half of the table on a thread of its own; the halves are merged.
    std::unique_ptr<SqliteRecordset> halves[2];
    const bool sorted = keys->inBothHalves(
        [&](int half, const std::shared_ptr<SqliteConnection>& connection, const QString& where,
            QString* halfError) {
            halves[half] = SqliteRecordset::openSorted(connection, stored, where, keys->middleRow(),
                                                       key, types, keys, halfError);
            return halves[half] != nullptr;
        },
        error);
    if (!sorted)
        return nullptr;
    return std::make_unique<SqliteMergedRecordset>(std::move(halves[0]), std::move(halves[1]));
}

} // namespace tabulor
