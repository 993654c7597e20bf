#include "production/databases/OpenDatabase.h"

#include "production/base/ErrorText.h"
#include "production/data/jet/JetDataSource.h"
#include "production/data/odbc/OdbcDataSource.h"
#include "production/data/postgres/PostgresDataSource.h"
#include "production/data/sqlite/SqliteDataSource.h"

#include <QFile>
#include <QFileInfo>

namespace tabulor {

namespace {

// The first sixteen bytes of every database file of the embedded engine.
constexpr char SqliteMagic[] = "SQLite format 3";

bool isServerAddress(const QString& name)
{
    return name.contains(QLatin1String("://")) ||
           name.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive);
}

QString unsupported(const QString& name)
{
    return QStringLiteral("'%1' is not a database this version can read.").arg(name);
}

} // namespace

std::unique_ptr<DataSource> openDatabase(const QString& name, QString* error)
{
    if (name.trimmed().isEmpty()) {
        setError(error, QStringLiteral("No database was given."));
        return nullptr;
    }
    // libpq's own URI schemes; the address is passed on as it stands.
    if (name.startsWith(QLatin1String("postgresql://")) ||
        name.startsWith(QLatin1String("postgres://")))
        return PostgresDataSource::open(name, error);
    if (name.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive))
        return OdbcDataSource::open(name.mid(5), error);
    if (isServerAddress(name)) {
        setError(error, unsupported(name));
        return nullptr;
    }
    const QFileInfo info(name);
    if (!info.exists()) {
        setError(error, QStringLiteral("The database '%1' does not exist.").arg(name));
        return nullptr;
    }
    // A pipe would block the open until something writes to it, and a device may never end.
    if (info.isDir()) {
        setError(error, QStringLiteral("'%1' is a folder, not a database file.").arg(name));
        return nullptr;
    }
    if (!info.isFile()) {
        setError(error,
                 QStringLiteral("'%1' is not a database file: it is a pipe, device or socket.")
                     .arg(name));
        return nullptr;
    }
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        setError(
            error,
            QStringLiteral("The database '%1' cannot be read: %2.").arg(name, file.errorString()));
        return nullptr;
    }
    // The terminating zero of the text is part of the engine's magic.
    const QByteArray header = file.read(20);
    if (header.startsWith(QByteArray(SqliteMagic, sizeof SqliteMagic)))
        return SqliteDataSource::open(name, error);
    if (JetDataSource::recognises(header))
        return JetDataSource::open(name, error, [](const QString& connection, QString* problem) {
            return openDatabase(QStringLiteral("odbc:") + connection, problem);
        });
    setError(error, unsupported(name));
    return nullptr;
}

} // namespace tabulor
