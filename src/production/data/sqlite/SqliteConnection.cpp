#include "production/data/sqlite/SqliteConnection.h"

#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tabulor {

namespace {

constexpr int BusyTimeoutMs = 5000;
// How long a count may take. The engine counts by reading every page of a table (or of its
// smallest index): a million rows take some tens of milliseconds, ten million a second, and
// the working view must open in well under a tenth of a second.
constexpr std::chrono::milliseconds CheapCountTime(50);

} // namespace

void SqliteStatementFinalizer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

std::shared_ptr<SqliteConnection> SqliteConnection::openReadOnly(const QString& path,
                                                                 QString* error)
{
    // A URI, so that mode=ro holds whatever characters the path contains.
    const QByteArray uri =
        QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() + "?mode=ro";
    sqlite3* handle = nullptr;
    const int opened =
        sqlite3_open_v2(uri.constData(), &handle,
                        SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    // The connection owns the handle from here, even a failed one, which must be closed too.
    std::shared_ptr<SqliteConnection> connection(new SqliteConnection(handle));
    QString problem;
    if (opened != SQLITE_OK) {
        problem = connection->lastError();
    } else {
        sqlite3_busy_timeout(handle, BusyTimeoutMs);
        // Opening reads nothing yet. Reading the catalog makes the engine check the header,
        // the file's length against it and the schema pages, so a foreign or cut-off file
        // fails here and not in the middle of a report.
        const SqliteStatement catalog =
            connection->prepare(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"), &problem);
        if (catalog && sqlite3_step(catalog.get()) != SQLITE_ROW)
            problem = connection->lastError();
    }
    if (!problem.isEmpty()) {
        setError(error,
                 QStringLiteral("The database '%1' cannot be opened: %2.").arg(path, problem));
        return nullptr;
    }
    return connection;
}

SqliteConnection::~SqliteConnection()
{
    sqlite3_close_v2(m_handle);
}

SqliteStatement SqliteConnection::prepare(const QString& sql, QString* error) const
{
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt* statement = nullptr;
    // The length includes the terminating zero, which spares the engine a copy.
    if (sqlite3_prepare_v2(m_handle, utf8.constData(), int(utf8.size()) + 1, &statement, nullptr) !=
        SQLITE_OK) {
        setError(error, lastError());
        sqlite3_finalize(statement);
        return nullptr;
    }
    return SqliteStatement(statement);
}

std::shared_ptr<SqliteConnection> SqliteConnection::openAnother() const
{
    return openReadOnly(QString::fromUtf8(sqlite3_db_filename(m_handle, "main")), nullptr);
}

QString SqliteConnection::recordSourceName(const QString& name) const
{
    const SqliteStatement lookup =
        prepare(QStringLiteral("SELECT name FROM sqlite_master "
                               "WHERE type IN ('table', 'view') AND name = ?1 COLLATE NOCASE"),
                nullptr);
    if (!lookup)
        return {};
    const QByteArray utf8 = name.toUtf8();
    sqlite3_bind_text(lookup.get(), 1, utf8.constData(), int(utf8.size()), SQLITE_STATIC);
    if (sqlite3_step(lookup.get()) != SQLITE_ROW)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(lookup.get(), 0)),
                             sqlite3_column_bytes(lookup.get(), 0));
}

std::optional<qint64> SqliteConnection::countRows(const QString& name) const
{
    // The count runs on a connection of its own, which is interrupted when the time is up:
    // interrupting this one would also stop the cursors that share it.
    const std::shared_ptr<SqliteConnection> counter = openAnother();
    const SqliteStatement count =
        counter ? counter->prepare(QStringLiteral("SELECT COUNT(*) FROM ") + quotedIdentifier(name),
                                   nullptr)
                : nullptr;
    if (!count)
        return std::nullopt;
    std::mutex mutex;
    std::condition_variable done;
    bool finished = false;
    std::thread watchdog([&] {
        std::unique_lock lock(mutex);
        if (!done.wait_for(lock, CheapCountTime, [&] { return finished; }))
            sqlite3_interrupt(counter->m_handle);
    });
    const int result = sqlite3_step(count.get());
    {
        const std::lock_guard lock(mutex);
        finished = true;
    }
    done.notify_one();
    watchdog.join();
    if (result != SQLITE_ROW)
        return std::nullopt;
    return sqlite3_column_int64(count.get(), 0);
}

bool SqliteConnection::defineFunction(const QByteArray& name, int arguments, Function function,
                                      void* data) const
{
    return sqlite3_create_function_v2(m_handle, name.constData(), arguments,
                                      SQLITE_UTF8 | SQLITE_DETERMINISTIC, data, function, nullptr,
                                      nullptr, nullptr) == SQLITE_OK;
}

void SqliteConnection::removeFunction(const QByteArray& name, int arguments) const
{
    sqlite3_create_function_v2(m_handle, name.constData(), arguments, SQLITE_UTF8, nullptr, nullptr,
                               nullptr, nullptr, nullptr);
}

QString SqliteConnection::quotedIdentifier(const QString& name)
{
    QString quoted = name;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString SqliteConnection::readFailure(int result) const
{
    const QString path = QString::fromUtf8(sqlite3_db_filename(m_handle, "main"));
    const int primary = result & 0xff;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB)
        return QStringLiteral("The database '%1' is damaged: %2.").arg(path, lastError());
    return QStringLiteral("The database '%1' cannot be read to the end: %2.")
        .arg(path, lastError());
}

QString SqliteConnection::lastError() const
{
    return QString::fromUtf8(sqlite3_errmsg(m_handle));
}

} // namespace tabulor
