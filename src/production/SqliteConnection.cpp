#include "production/SqliteConnection.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QtEndian>

#include <sqlite3.h>

#include <cstring>

namespace tabulor {

namespace {

constexpr qsizetype HeaderSize = 100;
constexpr int BusyTimeoutMs = 5000;

// The size the file must at least have by its own header, or 0 when the header does not say.
// The engine trusts the page count at offset 28 only while the change counter at offset 24
// equals the "valid for" counter at offset 92; older writers leave the count stale.
qint64 sizeByHeader(const QByteArray& header)
{
    const char* bytes = header.constData();
    const quint16 pageSizeField = qFromBigEndian<quint16>(bytes + 16);
    const qint64 pageSize = pageSizeField == 1 ? 65536 : pageSizeField;
    const quint32 pageCount = qFromBigEndian<quint32>(bytes + 28);
    const bool pageSizeValid = pageSize >= 512 && (pageSize & (pageSize - 1)) == 0;
    const bool pageCountValid = pageCount != 0 && std::memcmp(bytes + 24, bytes + 92, 4) == 0;
    return pageSizeValid && pageCountValid ? pageSize * pageCount : 0;
}

} // namespace

void SqliteStatementFinalizer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

std::shared_ptr<SqliteConnection> SqliteConnection::openReadOnly(const QString& path,
                                                                 QString* error)
{
    // The engine reads a cut-off file without complaint until a query reaches a missing page,
    // so a file shorter than its header promises is turned away before the engine sees it.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        setError(
            error,
            QStringLiteral("The database '%1' cannot be read: %2.").arg(path, file.errorString()));
        return nullptr;
    }
    const QByteArray header = file.read(HeaderSize);
    if (header.size() < HeaderSize || file.size() < sizeByHeader(header)) {
        setError(error, QStringLiteral("The database '%1' is damaged or incomplete.").arg(path));
        return nullptr;
    }
    file.close();

    // A URI, so that mode=ro holds whatever characters the path contains.
    const QByteArray uri =
        QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() + "?mode=ro";
    sqlite3* handle = nullptr;
    const int opened =
        sqlite3_open_v2(uri.constData(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    // The connection owns the handle from here, even a failed one, which must be closed too.
    std::shared_ptr<SqliteConnection> connection(new SqliteConnection(handle));
    if (opened != SQLITE_OK) {
        setError(error, QStringLiteral("The database '%1' cannot be opened: %2.")
                            .arg(path, connection->lastError()));
        return nullptr;
    }
    sqlite3_busy_timeout(handle, BusyTimeoutMs);

    // Reading the catalog makes the engine check the header and the schema pages.
    QString problem;
    SqliteStatement catalog =
        connection->prepare(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"), &problem);
    if (catalog && sqlite3_step(catalog.get()) != SQLITE_ROW)
        problem = connection->lastError();
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

bool SqliteConnection::hasRecordSource(const QString& name) const
{
    const SqliteStatement lookup =
        prepare(QStringLiteral("SELECT 1 FROM sqlite_master "
                               "WHERE type IN ('table', 'view') AND name = ?1"),
                nullptr);
    if (!lookup)
        return false;
    const QByteArray utf8 = name.toUtf8();
    sqlite3_bind_text(lookup.get(), 1, utf8.constData(), int(utf8.size()), SQLITE_STATIC);
    return sqlite3_step(lookup.get()) == SQLITE_ROW;
}

std::optional<qint64> SqliteConnection::countRows(const QString& name) const
{
    const SqliteStatement count =
        prepare(QStringLiteral("SELECT COUNT(*) FROM ") + quotedIdentifier(name), nullptr);
    if (!count || sqlite3_step(count.get()) != SQLITE_ROW)
        return std::nullopt;
    return sqlite3_column_int64(count.get(), 0);
}

QString SqliteConnection::quotedIdentifier(const QString& name)
{
    QString quoted = name;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString SqliteConnection::lastError() const
{
    return QString::fromUtf8(sqlite3_errmsg(m_handle));
}

} // namespace tabulor
