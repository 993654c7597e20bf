#pragma once

#include <QString>

#include <sqltypes.h>

#include <memory>
#include <optional>

namespace tabulor {

// Frees an ODBC statement handle.
struct OdbcStatementFree
{
    void operator()(void* statement) const;
};
using OdbcStatement = std::unique_ptr<void, OdbcStatementFree>;

// One connection through the ODBC driver manager, set up for reading: the driver is asked
// for read-only access where it offers it, and where it has transactions every statement runs
// in one that is rolled back, so nothing a query might do stays in the database.
class OdbcConnection
{
public:
    // connection: a connection string ("DRIVER=...;DATABASE=..." or "DSN=...;...") when it
    // holds "=", else the name of a data source. A password belongs in the data source's
    // configuration, not in the string. The login waits at most 5 seconds. Null with *error
    // set on failure.
    static std::unique_ptr<OdbcConnection> open(const QString& connection, QString* error);

    ~OdbcConnection();
    OdbcConnection(const OdbcConnection&) = delete;
    OdbcConnection& operator=(const OdbcConnection&) = delete;

    // A new statement handle; null with *error set on failure.
    OdbcStatement statement(QString* error) const;

    // The SQL name of a table: quoted with the driver's quote character, quotes inside
    // doubled, and qualified by its schema where the driver's SQL takes one. nullopt when the
    // driver quotes nothing and the name is no plain identifier.
    std::optional<QString> tableReference(const QString& schema, const QString& name) const;

    // Ends the transaction of the statements run so far, undoing anything they changed.
    void endTransaction() const;

    // The driver manager's and the driver's messages about a handle's last call, on one line.
    static QString diagnostics(short handleType, void* handle);

private:
    OdbcConnection() = default;

    void* m_environment = nullptr;
    void* m_connection = nullptr;
    bool m_connected = false;
    bool m_manualCommit = false;
    bool m_schemaInStatements = false;
    QString m_quote;
};

// Runs one statement. Texts go to the driver as UTF-8 through the narrow functions: the
// driver manager hands them on unchanged, where its conversion of wide text for a driver
// without wide functions keeps only Latin-1. What comes back is read as wide text, which
// every driver converts itself.
SQLRETURN odbcExecute(void* statement, const QString& sql);

// A column (counted from 0) of the current row as text (character data), read in pieces of
// any length, or the number of bytes of binary data; nullopt for NULL or when the driver
// cannot deliver it.
std::optional<QString> odbcText(void* statement, int column);
std::optional<qint64> odbcByteCount(void* statement, int column);

} // namespace tabulor
