#pragma once

#include <QByteArrayList>
#include <QString>

#include <memory>

struct pg_conn;
struct pg_result;

namespace tabulor {

struct PostgresResultClear
{
    void operator()(pg_result* result) const;
};
using PostgresResult = std::unique_ptr<pg_result, PostgresResultClear>;

// One session with a PostgreSQL server, set up for reading reports: every transaction is
// read-only, dates come as ISO text and text as UTF-8. The address is libpq's own URI form
// (postgresql://user@host:port/database?...); the password comes from PGPASSWORD or the
// password file, never from the address.
class PostgresConnection
{
public:
    // The address is checked and the server reached within the connect timeout (5 seconds
    // unless the address sets its own). statementTimeoutMs > 0 bounds every statement of the
    // session. Null with *error set on failure.
    static std::unique_ptr<PostgresConnection> open(const QString& address, int statementTimeoutMs,
                                                    QString* error);

    ~PostgresConnection();
    PostgresConnection(const PostgresConnection&) = delete;
    PostgresConnection& operator=(const PostgresConnection&) = delete;

    // Runs one statement with text parameters ($1, $2, ...) and waits for its whole result.
    // Null with *error set when it fails.
    PostgresResult run(const QByteArray& sql, const QByteArrayList& parameters,
                       QString* error) const;

    // A name as an SQL identifier in double quotes, quotes inside doubled.
    QByteArray quotedIdentifier(const QString& name) const;

    // The server's or library's last message, on one line.
    QString lastError() const;

    pg_conn* handle() const { return m_handle; }

private:
    explicit PostgresConnection(pg_conn* handle) : m_handle(handle) {}

    pg_conn* m_handle;
};

// Whether a result holds rows or completed without error.
bool succeeded(const pg_result* result);

// A result's message on one line, without the severity prefix the server puts in front.
QString resultError(const pg_result* result);

} // namespace tabulor
