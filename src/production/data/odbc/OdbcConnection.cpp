#include "production/data/odbc/OdbcConnection.h"

#include "production/base/ErrorText.h"

#include <QRegularExpression>
#include <QStringList>

#include <sql.h>
#include <sqlext.h>

namespace tabulor {

namespace {

constexpr SQLULEN LoginTimeoutSeconds = 5;

QString fromWide(const SQLWCHAR* text, qsizetype length)
{
    return QString::fromUtf16(reinterpret_cast<const char16_t*>(text), length);
}

// Whether a connection string sets a password.
bool holdsPassword(const QString& connection)
{
    for (const QString& part : connection.split(u';')) {
        const QString key = part.section(u'=', 0, 0).trimmed();
        if (part.contains(u'=') &&
            (key.compare(QLatin1String("PWD"), Qt::CaseInsensitive) == 0 ||
             key.compare(QLatin1String("PASSWORD"), Qt::CaseInsensitive) == 0))
            return true;
    }
    return false;
}

// Reads a column of the current row in pieces until the driver has no more.
std::optional<QByteArray> readPieces(SQLHSTMT statement, int column, SQLSMALLINT type,
                                     qsizetype terminator)
{
    QByteArray data;
    char buffer[8192];
    for (;;) {
        SQLLEN indicator = 0;
        const SQLRETURN result = SQLGetData(statement, SQLUSMALLINT(column + 1), type, buffer,
                                            sizeof buffer, &indicator);
        if (result == SQL_NO_DATA)
            return data;
        if (!SQL_SUCCEEDED(result) || indicator == SQL_NULL_DATA)
            return std::nullopt;
        const qsizetype room = qsizetype(sizeof buffer) - terminator;
        data.append(buffer, indicator == SQL_NO_TOTAL || indicator > room ? room : indicator);
        // More follows only when the piece was cut.
        if (result == SQL_SUCCESS || (indicator != SQL_NO_TOTAL && indicator <= room))
            return data;
    }
}

} // namespace

void OdbcStatementFree::operator()(void* statement) const
{
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

QString OdbcConnection::diagnostics(short handleType, void* handle)
{
    QStringList messages;
    for (SQLSMALLINT record = 1;; ++record) {
        SQLWCHAR state[6];
        SQLINTEGER nativeError = 0;
        SQLWCHAR message[1024];
        SQLSMALLINT length = 0;
        const SQLRETURN result = SQLGetDiagRecW(handleType, handle, record, state, &nativeError,
                                                message, SQLSMALLINT(std::size(message)), &length);
        if (!SQL_SUCCEEDED(result))
            break;
        messages.append(
            fromWide(message, std::min<qsizetype>(length, std::size(message) - 1)).simplified());
    }
    return messages.isEmpty() ? QStringLiteral("the driver gave no reason") : messages.join(u' ');
}

std::unique_ptr<OdbcConnection> OdbcConnection::open(const QString& connection, QString* error)
{
    const auto fail = [&](const QString& reason) {
        setError(
            error,
            QStringLiteral("The database 'odbc:%1' cannot be opened: %2").arg(connection, reason));
        return nullptr;
    };
    if (connection.trimmed().isEmpty())
        return fail(QStringLiteral("no data source name or connection string was given."));
    if (holdsPassword(connection)) {
        return fail(QStringLiteral("the connection string holds a password. Report definitions "
                                   "never keep one: keep it in the data source's configuration."));
    }

    std::unique_ptr<OdbcConnection> result(new OdbcConnection);
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &result->m_environment)))
        return fail(QStringLiteral("the ODBC driver manager cannot be started."));
    SQLSetEnvAttr(result->m_environment, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    if (!SQL_SUCCEEDED(
            SQLAllocHandle(SQL_HANDLE_DBC, result->m_environment, &result->m_connection)))
        return fail(diagnostics(SQL_HANDLE_ENV, result->m_environment));
    SQLHDBC handle = result->m_connection;
    SQLSetConnectAttrW(handle, SQL_ATTR_LOGIN_TIMEOUT,
                       reinterpret_cast<SQLPOINTER>(LoginTimeoutSeconds), 0);
    // Drivers that open files take this before the connection is made.
    SQLSetConnectAttrW(handle, SQL_ATTR_ACCESS_MODE,
                       reinterpret_cast<SQLPOINTER>(SQL_MODE_READ_ONLY), 0);

    const QString text =
        connection.contains(u'=') ? connection : QStringLiteral("DSN=") + connection;
    // Narrow and UTF-8, for the same reason as statements (see odbcExecute).
    QByteArray utf8 = text.toUtf8();
    const SQLRETURN connected =
        SQLDriverConnect(handle, nullptr, reinterpret_cast<SQLCHAR*>(utf8.data()),
                         SQLSMALLINT(utf8.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(connected))
        return fail(diagnostics(SQL_HANDLE_DBC, handle));
    result->m_connected = true;
    SQLSetConnectAttrW(handle, SQL_ATTR_ACCESS_MODE,
                       reinterpret_cast<SQLPOINTER>(SQL_MODE_READ_ONLY), 0);

    SQLUSMALLINT transactions = SQL_TC_NONE;
    SQLGetInfoW(handle, SQL_TXN_CAPABLE, &transactions, sizeof transactions, nullptr);
    if (transactions != SQL_TC_NONE) {
        result->m_manualCommit = SQL_SUCCEEDED(SQLSetConnectAttrW(
            handle, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0));
    }
    SQLUINTEGER schemaUsage = 0;
    SQLGetInfoW(handle, SQL_SCHEMA_USAGE, &schemaUsage, sizeof schemaUsage, nullptr);
    result->m_schemaInStatements = (schemaUsage & SQL_SU_DML_STATEMENTS) != 0;
    SQLWCHAR quote[8] = {};
    SQLSMALLINT length = 0;
    SQLGetInfoW(handle, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length);
    result->m_quote =
        fromWide(quote, std::min<qsizetype>(length / qsizetype(sizeof(SQLWCHAR)), 7)).trimmed();
    return result;
}

OdbcConnection::~OdbcConnection()
{
    if (m_connected) {
        endTransaction();
        SQLDisconnect(m_connection);
    }
    if (m_connection)
        SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    if (m_environment)
        SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
}

OdbcStatement OdbcConnection::statement(QString* error) const
{
    SQLHSTMT handle = SQL_NULL_HSTMT;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &handle))) {
        setError(error, diagnostics(SQL_HANDLE_DBC, m_connection));
        return nullptr;
    }
    return OdbcStatement(handle);
}

std::optional<QString> OdbcConnection::tableReference(const QString& schema,
                                                      const QString& name) const
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    const auto quoted = [&](const QString& part) -> std::optional<QString> {
        if (m_quote.isEmpty()) {
            if (!plain.match(part).hasMatch())
                return std::nullopt;
            return part;
        }
        return m_quote + QString(part).replace(m_quote, m_quote + m_quote) + m_quote;
    };
    const std::optional<QString> table = quoted(name);
    if (!table || schema.isEmpty() || !m_schemaInStatements)
        return table;
    const std::optional<QString> owner = quoted(schema);
    if (!owner)
        return std::nullopt;
    return *owner + u'.' + *table;
}

void OdbcConnection::endTransaction() const
{
    if (m_manualCommit)
        SQLEndTran(SQL_HANDLE_DBC, m_connection, SQL_ROLLBACK);
}

SQLRETURN odbcExecute(void* statement, const QString& sql)
{
    QByteArray utf8 = sql.toUtf8();
    return SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(utf8.data()),
                         SQLINTEGER(utf8.size()));
}

std::optional<QString> odbcText(void* statement, int column)
{
    const std::optional<QByteArray> data =
        readPieces(statement, column, SQL_C_WCHAR, sizeof(SQLWCHAR));
    if (!data)
        return std::nullopt;
    return fromWide(reinterpret_cast<const SQLWCHAR*>(data->constData()),
                    data->size() / qsizetype(sizeof(SQLWCHAR)));
}

std::optional<qint64> odbcByteCount(void* statement, int column)
{
    // Each piece comes with the length still to come, when the driver knows it.
    char buffer[8192];
    qint64 count = 0;
    for (;;) {
        SQLLEN indicator = 0;
        const SQLRETURN result = SQLGetData(statement, SQLUSMALLINT(column + 1), SQL_C_BINARY,
                                            buffer, sizeof buffer, &indicator);
        if (result == SQL_NO_DATA)
            return count;
        if (!SQL_SUCCEEDED(result) || indicator == SQL_NULL_DATA)
            return std::nullopt;
        if (indicator != SQL_NO_TOTAL)
            return count + indicator;
        count += qint64(sizeof buffer);
    }
}

} // namespace tabulor
