#pragma once

#include "production/base/ErrorText.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_context;
struct sqlite3_stmt;
struct sqlite3_value;

namespace tabulor {

struct SqliteStatementFinalizer
{
    void operator()(sqlite3_stmt* statement) const;
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteStatementFinalizer>;

// One read-only connection to a database file. The data source and every cursor opened on it
// share it, so a cursor stays usable after its data source is gone. A connection is used by
// one thread at a time (work beside it gets a connection of its own), so the engine does not
// lock it on every call.
class SqliteConnection
{
public:
    // Opens the file read-only and reads its schema once, so that a damaged or foreign file
    // fails here and not in the middle of a report. Null with *error set on failure.
    static std::shared_ptr<SqliteConnection> openReadOnly(const QString& path, QString* error);

    // A connection of its own to the same file, for work beside this one; null if it fails.
    std::shared_ptr<SqliteConnection> openAnother() const;

    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    // Prepares one statement. Null with *error set to the engine's message on failure.
    SqliteStatement prepare(const QString& sql, QString* error) const;

    // The stored name of the table or view that a name opens, which may differ from it in the
    // case of its ASCII letters as the engine matches names; empty when there is none.
    QString recordSourceName(const QString& name) const;

    // SELECT COUNT(*) over a table or view when the engine gives it within a moment; nullopt
    // when it cannot be counted, or not that quickly.
    std::optional<qint64> countRows(const QString& name) const;

    using Function = void (*)(sqlite3_context*, int, sqlite3_value**);
    // Defines an SQL function of this many arguments, deterministic, that gets data with each
    // call, until it is removed.
    bool defineFunction(const QByteArray& name, int arguments, Function function, void* data) const;
    void removeFunction(const QByteArray& name, int arguments) const;

    // A name as an SQL identifier: in double quotes, quotes inside doubled.
    static QString quotedIdentifier(const QString& name);

    // The engine's message about the last failed call on this connection.
    QString lastError() const;
    // Why reading rows stopped when a step failed with `result`, in words for the user that
    // name the database: damaged, or unreadable for another reason.
    QString readFailure(int result) const;

private:
    explicit SqliteConnection(sqlite3* handle) : m_handle(handle) {}

    sqlite3* m_handle;
};

} // namespace tabulor
