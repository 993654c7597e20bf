#include "production/data/postgres/PostgresConnection.h"

#include "production/base/ErrorText.h"

#include <libpq-fe.h>

#include <vector>

namespace tabulor {

namespace {

// The server is given this long to answer when the address does not say otherwise.
constexpr char DefaultConnectTimeoutSeconds[] = "5";

// Whether the address is valid and free of a password; *error says why not.
bool checkAddress(const QString& address, QString* error)
{
    char* message = nullptr;
    PQconninfoOption* options = PQconninfoParse(address.toUtf8().constData(), &message);
    if (!options) {
        setError(error, QStringLiteral("'%1' is not a valid database address: %2")
                            .arg(address, QString::fromUtf8(message).simplified()));
        PQfreemem(message);
        return false;
    }
    bool hasPassword = false;
    for (const PQconninfoOption* option = options; option->keyword; ++option) {
        if (qstrcmp(option->keyword, "password") == 0 && option->val && *option->val)
            hasPassword = true;
    }
    PQconninfoFree(options);
    if (hasPassword) {
        setError(error, QStringLiteral("The database address '%1' holds a password. Report "
                                       "definitions never keep one: give it in PGPASSWORD or in "
                                       "the password file (~/.pgpass) instead.")
                            .arg(address));
        return false;
    }
    return true;
}

} // namespace

void PostgresResultClear::operator()(pg_result* result) const
{
    PQclear(result);
}

bool succeeded(const pg_result* result)
{
    const ExecStatusType status = PQresultStatus(result);
    return status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK || status == PGRES_SINGLE_TUPLE;
}

QString resultError(const pg_result* result)
{
    const char* primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    if (primary)
        return QString::fromUtf8(primary).simplified();
    return QString::fromUtf8(PQresultErrorMessage(result)).simplified();
}

std::unique_ptr<PostgresConnection> PostgresConnection::open(const QString& address,
                                                             int statementTimeoutMs, QString* error)
{
    if (!checkAddress(address, error))
        return nullptr;
    // Later entries override earlier ones, and the address is expanded where it stands: it may
    // set its own connect timeout, but not the encoding the values are read in.
    const QByteArray utf8 = address.toUtf8();
    const char* const keywords[] = {"connect_timeout", "dbname", "client_encoding",
                                    "fallback_application_name", nullptr};
    const char* const values[] = {DefaultConnectTimeoutSeconds, utf8.constData(), "UTF8", "tabulor",
                                  nullptr};
    std::unique_ptr<PostgresConnection> connection(
        new PostgresConnection(PQconnectdbParams(keywords, values, 1)));
    if (!connection->m_handle || PQstatus(connection->m_handle) != CONNECTION_OK) {
        setError(error, QStringLiteral("The database '%1' cannot be opened: %2")
                            .arg(address, connection->lastError()));
        return nullptr;
    }

    // A report never writes: every transaction of the session is read-only. The output
    // formats are fixed, whatever the server's or the user's defaults.
    QByteArray setup = "SET default_transaction_read_only = on; "
                       "SET DateStyle = 'ISO, YMD'; "
                       "SET IntervalStyle = 'postgres'; "
                       "SET bytea_output = 'hex'; "
                       "SET extra_float_digits = 1;";
    if (statementTimeoutMs > 0)
        setup += " SET statement_timeout = " + QByteArray::number(statementTimeoutMs) + ";";
    const PostgresResult result(PQexec(connection->m_handle, setup.constData()));
    if (!succeeded(result.get())) {
        setError(error, QStringLiteral("The database '%1' cannot be read: %2")
                            .arg(address, resultError(result.get())));
        return nullptr;
    }
    return connection;
}

PostgresConnection::~PostgresConnection()
{
    PQfinish(m_handle);
}

PostgresResult PostgresConnection::run(const QByteArray& sql, const QByteArrayList& parameters,
                                       QString* error) const
{
    std::vector<const char*> values;
    for (const QByteArray& parameter : parameters)
        values.push_back(parameter.constData());
    // The extended protocol runs exactly one statement, whatever the text holds.
    PostgresResult result(PQexecParams(m_handle, sql.constData(), int(values.size()), nullptr,
                                       values.data(), nullptr, nullptr, 0));
    if (!result) {
        setError(error, lastError());
        return nullptr;
    }
    if (!succeeded(result.get())) {
        setError(error, resultError(result.get()));
        return nullptr;
    }
    return result;
}

QByteArray PostgresConnection::quotedIdentifier(const QString& name) const
{
    const QByteArray utf8 = name.toUtf8();
    char* quoted = PQescapeIdentifier(m_handle, utf8.constData(), size_t(utf8.size()));
    const QByteArray result(quoted);
    PQfreemem(quoted);
    return result;
}

QString PostgresConnection::lastError() const
{
    return QString::fromUtf8(PQerrorMessage(m_handle)).simplified();
}

} // namespace tabulor
