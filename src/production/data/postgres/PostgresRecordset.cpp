#include "production/data/postgres/PostgresRecordset.h"

#include "production/base/ErrorText.h"
#include "production/base/FieldType.h"
#include "production/data/postgres/PostgresValues.h"

#include <libpq-fe.h>

#include <vector>

namespace tabulor {

namespace {

// Money is written in the server's monetary locale; as numeric it is a plain decimal.
constexpr quint32 MoneyOid = 790;

} // namespace

std::unique_ptr<PostgresRecordset> PostgresRecordset::open(const QString& address,
                                                           const PostgresRelation& relation,
                                                           std::optional<qint64> rowLimit,
                                                           QString* error)
{
    const QByteArray limit =
        rowLimit ? " LIMIT " + QByteArray::number(std::max<qint64>(*rowLimit, 0)) : QByteArray();
    return run(address, relation, limit, {}, error);
}

std::unique_ptr<PostgresRecordset> PostgresRecordset::openSorted(const QString& address,
                                                                 const PostgresRelation& relation,
                                                                 const PostgresSortedQuery& sorted,
                                                                 QString* error)
{
    return run(address, relation, sorted.joins + " ORDER BY " + sorted.orderBy, sorted.parameters,
               error);
}

std::unique_ptr<PostgresRecordset> PostgresRecordset::run(const QString& address,
                                                          const PostgresRelation& relation,
                                                          const QByteArray& tail,
                                                          QByteArrayList parameters, QString* error)
{
    std::unique_ptr<PostgresConnection> connection = PostgresConnection::open(address, 0, error);
    if (!connection)
        return nullptr;
    QByteArrayList columns;
    for (const PostgresColumn& column : relation.columns) {
        const QByteArray name = "t." + connection->quotedIdentifier(column.name);
        columns.append(column.typeOid == MoneyOid ? name + "::pg_catalog.numeric" : name);
    }
    const QByteArray sql = "SELECT " + columns.join(", ") + " FROM " +
                           connection->quotedIdentifier(relation.schema) + '.' +
                           connection->quotedIdentifier(relation.name) + " AS t" + tail;

    std::unique_ptr<PostgresRecordset> records(
        new PostgresRecordset(std::move(connection), sql, std::move(parameters), relation));
    QString problem;
    if (!records->start(&problem)) {
        setError(error, QStringLiteral("'%1' cannot be read: %2").arg(relation.name, problem));
        return nullptr;
    }
    return records;
}

PostgresRecordset::PostgresRecordset(std::unique_ptr<PostgresConnection> connection, QByteArray sql,
                                     QByteArrayList parameters, const PostgresRelation& relation)
    : m_connection(std::move(connection)), m_sql(std::move(sql)),
      m_parameters(std::move(parameters))
{
    for (const PostgresColumn& column : relation.columns) {
        m_names.append(column.name);
        m_types.append(fieldTypeForPostgresType(column.typeOid));
    }
}

PostgresRecordset::~PostgresRecordset()
{
    abandon();
}

bool PostgresRecordset::start(QString* error)
{
    m_row.reset();
    m_rowsRead = 0;
    m_atEnd = true;
    pg_conn* handle = m_connection->handle();
    std::vector<const char*> values;
    for (const QByteArray& parameter : std::as_const(m_parameters))
        values.push_back(parameter.constData());
    if (!PQsendQueryParams(handle, m_sql.constData(), int(values.size()), nullptr, values.data(),
                           nullptr, nullptr, 0)) {
        setError(error, m_connection->lastError());
        return false;
    }
    m_running = true;
    // Without single-row mode the library would gather the whole result first.
    PQsetSingleRowMode(handle);
    return fetch(error);
}

bool PostgresRecordset::fetch(QString* error)
{
    m_row.reset();
    PostgresResult next(PQgetResult(m_connection->handle()));
    const ExecStatusType status = next ? PQresultStatus(next.get()) : PGRES_TUPLES_OK;
    if (status == PGRES_SINGLE_TUPLE) {
        m_row = std::move(next);
        m_atEnd = false;
        ++m_rowsRead;
        return true;
    }
    m_atEnd = true;
    const bool ok = status == PGRES_TUPLES_OK;
    if (!ok)
        setError(error, next ? resultError(next.get()) : m_connection->lastError());
    // The query is over; the session is free again once its last result has been taken.
    while (PostgresResult rest{PQgetResult(m_connection->handle())}) {
    }
    m_running = false;
    return ok;
}

void PostgresRecordset::abandon()
{
    if (!m_running)
        return;
    pg_conn* handle = m_connection->handle();
    if (PGcancel* cancel = PQgetCancel(handle)) {
        char message[256];
        PQcancel(cancel, message, sizeof message);
        PQfreeCancel(cancel);
    }
    while (PostgresResult rest{PQgetResult(handle)}) {
    }
    m_running = false;
    m_row.reset();
    m_atEnd = true;
}

bool PostgresRecordset::moveFirst()
{
    if (m_rowsRead <= 1 && m_running)
        return true;
    abandon();
    return start(nullptr);
}

bool PostgresRecordset::moveNext()
{
    if (m_atEnd)
        return false;
    return fetch(nullptr) && !m_atEnd;
}

QVariant PostgresRecordset::value(int field) const
{
    if (!m_row || field < 0 || field >= m_names.size() || PQgetisnull(m_row.get(), 0, field))
        return {};
    return postgresValue(
        QByteArrayView(PQgetvalue(m_row.get(), 0, field), PQgetlength(m_row.get(), 0, field)),
        m_types.at(field));
}

bool PostgresRecordset::utf8Text(int field, std::string_view* text) const
{
    if (!m_row || field < 0 || field >= m_names.size() || !postgresValueIsText(m_types.at(field)) ||
        PQgetisnull(m_row.get(), 0, field))
        return false;
    *text = std::string_view(PQgetvalue(m_row.get(), 0, field),
                             static_cast<size_t>(PQgetlength(m_row.get(), 0, field)));
    return true;
}

} // namespace tabulor
