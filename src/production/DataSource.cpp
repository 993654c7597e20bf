#include "production/DataSource.h"

#include "production/JetDataSource.h"
#include "production/OdbcDataSource.h"
#include "production/PostgresDataSource.h"
#include "production/SqliteConnection.h"
#include "production/SqliteDataSource.h"

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

QString recordSourceKindName(RecordSourceKind kind)
{
    switch (kind) {
    case RecordSourceKind::Table:
        return QStringLiteral("table");
    case RecordSourceKind::Linked:
        return QStringLiteral("linked");
    case RecordSourceKind::View:
        return QStringLiteral("view");
    case RecordSourceKind::Query:
        return QStringLiteral("query");
    }
    return {};
}

std::unique_ptr<Recordset> DataSource::openSorted(const QString&, const QList<SortField>&,
                                                  const QCollator&, QString*)
{
    return nullptr;
}

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
        return JetDataSource::open(name, error);
    setError(error, unsupported(name));
    return nullptr;
}

} // namespace tabulor
