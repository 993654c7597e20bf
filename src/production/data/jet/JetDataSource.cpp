#include "production/data/jet/JetDataSource.h"

#include "production/base/ErrorText.h"
#include "production/data/jet/JetHandle.h"
#include "production/data/jet/JetQuery.h"
#include "production/data/jet/JetRecordset.h"

#include <QDir>
#include <QFileInfo>

namespace tabulor {

namespace {

constexpr int MaxLinkDepth = 8;

// The file name of a stored path, which may use either separator.
QString fileNameOf(const QString& storedPath)
{
    const qsizetype slash = std::max(storedPath.lastIndexOf(u'\\'), storedPath.lastIndexOf(u'/'));
    return storedPath.mid(slash + 1);
}

} // namespace

bool JetDataSource::recognises(QByteArrayView header)
{
    const QByteArrayView magic = header.size() >= 20 ? header.sliced(4, 16) : QByteArrayView();
    return magic == QByteArrayView("Standard Jet DB", 16) ||
           magic == QByteArrayView("Standard ACE DB", 16);
}

std::unique_ptr<JetDataSource> JetDataSource::open(const QString& path, QString* error,
                                                   OdbcOpener odbc)
{
    return open(path, 0, std::move(odbc), error);
}

std::unique_ptr<JetDataSource> JetDataSource::open(const QString& path, int linkDepth,
                                                   OdbcOpener odbc, QString* error)
{
    std::shared_ptr<JetHandle> handle = JetHandle::open(path, error);
    if (!handle)
        return nullptr;
    std::optional<JetCatalog> catalog = JetCatalog::read(*handle, error);
    if (!catalog)
        return nullptr;
    return std::unique_ptr<JetDataSource>(
        new JetDataSource(std::move(handle), std::move(*catalog), linkDepth, std::move(odbc)));
}

JetDataSource::JetDataSource(std::shared_ptr<JetHandle> handle, JetCatalog catalog, int linkDepth,
                             OdbcOpener odbc)
    : m_handle(std::move(handle)), m_catalog(std::move(catalog)), m_linkDepth(linkDepth),
      m_odbc(std::move(odbc))
{
}

JetDataSource::~JetDataSource() = default;

QList<RecordSourceEntry> JetDataSource::recordSources()
{
    return m_catalog.recordSources();
}

std::unique_ptr<Recordset>
JetDataSource::openRecordSource(const QString& name, std::optional<qint64> rowLimit, QString* error)
{
    const JetObject* object = m_catalog.find(name);
    if (!object) {
        setError(error, QStringLiteral("'%1' is not a table or query of the database.").arg(name));
        return nullptr;
    }
    switch (object->kind) {
    case JetObject::Kind::Table:
        return JetRecordset::open(*m_handle, m_handle->findTable(object->name), rowLimit, error);
    case JetObject::Kind::LinkedFile:
    case JetObject::Kind::LinkedOdbc: {
        const std::unique_ptr<DataSource> target = openLinkTarget(*object, error);
        return target ? target->openRecordSource(object->foreignName, rowLimit, error) : nullptr;
    }
    case JetObject::Kind::Query:
        return JetQuery::open(*this, *m_handle, m_catalog, *object, rowLimit, m_queryNesting,
                              error);
    }
    return nullptr;
}

std::optional<qint64> JetDataSource::countRows(const QString& name)
{
    const JetObject* object = m_catalog.find(name);
    if (!object || object->kind == JetObject::Kind::Query)
        return std::nullopt;
    if (object->kind != JetObject::Kind::Table) {
        const std::unique_ptr<DataSource> target = openLinkTarget(*object, nullptr);
        return target ? target->countRows(object->foreignName) : std::nullopt;
    }
    const JetTable table = m_handle->openTable(m_handle->findTable(object->name), nullptr);
    return table ? std::optional<qint64>(table->num_rows) : std::nullopt;
}

std::unique_ptr<DataSource> JetDataSource::openLinkTarget(const JetObject& link,
                                                          QString* error) const
{
    QString problem;
    std::unique_ptr<DataSource> target;
    if (link.kind == JetObject::Kind::LinkedOdbc) {
        // The connection is kept as "ODBC;DSN=...;..."; the ODBC backend takes the rest.
        QString connection = link.connect;
        if (connection.startsWith(QLatin1String("ODBC;"), Qt::CaseInsensitive))
            connection = connection.mid(5);
        if (m_odbc)
            target = m_odbc(connection, &problem);
        else
            problem = QStringLiteral("tables linked through ODBC cannot be read here");
    } else if (m_linkDepth >= MaxLinkDepth) {
        problem = QStringLiteral("its links lead round in a circle");
    } else {
        // Links keep the path the file had where the link was made; when the file is not
        // there any more, it is looked for by its name beside this database.
        QString path = link.database;
        if (!QFileInfo(path).isFile())
            path = QFileInfo(m_handle->path()).dir().filePath(fileNameOf(link.database));
        target = open(path, m_linkDepth + 1, m_odbc, &problem);
    }
    if (!target)
        setError(
            error,
            QStringLiteral("The linked table '%1' cannot be opened: %2").arg(link.name, problem));
    return target;
}

} // namespace tabulor
