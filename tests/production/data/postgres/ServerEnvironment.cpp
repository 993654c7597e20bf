#include "ServerEnvironment.h"

#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tabulor::test {

namespace {

Servers g_servers;

QString readLine(const QString& path)
{
    return QString::fromUtf8(readBytes(path)).trimmed();
}

// The server comes from the test run's fixture (postgres_server in CTest), which leaves its
// address in TABULOR_POSTGRES_STATE. A test program run on its own starts one of its own
// with the same script and stops it when it ends.
class ServerEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        QString state = QStringLiteral(TABULOR_POSTGRES_STATE);
        if (!QFile::exists(state + QStringLiteral("/uri"))) {
            m_ownServer.emplace();
            state = m_ownServer->filePath(QStringLiteral("state"));
            const QString output =
                runScript({QStringLiteral("start"), state, samplePath("sample.sqlite")});
            if (!output.isNull()) {
                fail(QStringLiteral("The PostgreSQL test server did not start: ") + output);
                m_ownServer.reset();
                return;
            }
        }
        g_servers.postgresAddress = readLine(state + QStringLiteral("/uri"));
        g_servers.postgresPort = readLine(state + QStringLiteral("/port")).toInt();
        // The password comes from the fixture's password file and nowhere else.
        qputenv("PGPASSFILE", QFile::encodeName(state + QStringLiteral("/pgpass")));
        qunsetenv("PGPASSWORD");
        writeOdbcConfiguration();
    }

    void TearDown() override
    {
        if (m_ownServer)
            runScript({QStringLiteral("stop"), m_ownServer->filePath(QStringLiteral("state"))});
    }

private:
    static void fail(const QString& problem)
    {
        g_servers.problem = problem;
        ADD_FAILURE() << problem.toStdString();
    }

    // Runs the fixture script; a null text when it succeeded, else what it said.
    static QString runScript(const QStringList& arguments)
    {
        QProcess script;
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(QStringLiteral("bash"),
                     QStringList{QStringLiteral(TABULOR_POSTGRES_SCRIPT)} + arguments);
        const bool finished = script.waitForFinished(120000);
        const QString output = QString::fromUtf8(script.readAll());
        if (finished && script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0)
            return {};
        return output.isEmpty() ? script.errorString() : output;
    }

    // Driver and data source definitions of this run's own, in the driver manager's format.
    void writeOdbcConfiguration()
    {
        const QString drivers = QStringLiteral(TABULOR_ODBC_DRIVERS);
        const QString sqliteDriver = drivers + QStringLiteral("/libsqlite3odbc.so");
        const QString postgresDriver = drivers + QStringLiteral("/psqlodbcw.so");
        for (const auto& [path, package] : {std::pair{sqliteDriver, "libsqliteodbc"},
                                            std::pair{postgresDriver, "odbc-postgresql"}}) {
            if (!QFile::exists(path)) {
                fail(QStringLiteral("The ODBC driver %1 is not installed (package %2; "
                                    "scripts/install-deps.sh installs it).")
                         .arg(path, QLatin1String(package)));
                return;
            }
        }
        g_servers.odbcFolder = m_odbc.path();
        g_servers.odbcSampleCopy = copyInto(m_odbc, samplePath("sample.sqlite"));
        writeBytes(m_odbc.filePath(QStringLiteral("odbcinst.ini")),
                   QStringLiteral("[Tabulor SQLite]\nDriver=%1\n\n"
                                  "[Tabulor PostgreSQL]\nDriver=%2\n")
                       .arg(sqliteDriver, postgresDriver)
                       .toUtf8());
        writeBytes(m_odbc.filePath(QStringLiteral("odbc.ini")),
                   QStringLiteral("[Sample]\nDriver=Tabulor SQLite\nDatabase=%1\nNoCreat=1\n\n"
                                  "[ServerSample]\nDriver=Tabulor PostgreSQL\n"
                                  "Servername=127.0.0.1\nPort=%2\nDatabase=tabulor_sample\n"
                                  "Username=report_reader\n")
                       .arg(g_servers.odbcSampleCopy)
                       .arg(g_servers.postgresPort)
                       .toUtf8());
        qputenv("ODBCSYSINI", QFile::encodeName(m_odbc.path()));
        qputenv("ODBCINI", QFile::encodeName(m_odbc.filePath(QStringLiteral("odbc.ini"))));
    }

    std::optional<QTemporaryDir> m_ownServer;
    QTemporaryDir m_odbc;
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new ServerEnvironment);

} // namespace

const Servers& servers()
{
    return g_servers;
}

std::unique_ptr<DataSource> openOrFail(const QString& name)
{
    QString error;
    std::unique_ptr<DataSource> source = openDatabase(name, &error);
    EXPECT_TRUE(source) << error.toStdString();
    return source;
}

QList<QVariantList> readAll(DataSource& source, const QString& name, std::optional<qint64> rowLimit)
{
    QString error;
    const std::unique_ptr<Recordset> records = source.openRecordSource(name, rowLimit, &error);
    EXPECT_TRUE(records) << name.toStdString() << ": " << error.toStdString();
    return records ? readRows(*records) : QList<QVariantList>();
}

int closedPort()
{
    // Bound and closed again: nothing listens there until the system hands it out anew.
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(socket);
    return ntohs(address.sin_port);
}

} // namespace tabulor::test
