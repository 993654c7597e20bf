#pragma once

#include "production/data/jet/sql/JetSqlTranslator.h"
#include "production/data/sqlite/SqliteConnection.h"

#include <QString>
#include <QVariant>

#include <map>
#include <memory>
#include <optional>

struct sqlite3;

namespace tabulor {

class DataSource;
class JetCatalog;

struct JetEngineCloser
{
    void operator()(sqlite3* db) const;
};
// An in-memory database of the embedded engine.
using JetEngine = std::unique_ptr<sqlite3, JetEngineCloser>;

// The field type of a column of a table the workspace loaded, from the type it was declared
// with; nullopt for a column the engine computed.
std::optional<qint16> fieldTypeOfDeclaration(const char* declaration);

// The in-memory database a saved query runs in, with the Jet functions registered and the
// tables and queries it reads copied in, each once, as it names them.
class JetQueryWorkspace
{
public:
    // The tables and queries come from `database`; `catalog` tells their names.
    JetQueryWorkspace(DataSource& database, const JetCatalog& catalog);

    // Opens the engine; false with *error set when it cannot be started.
    bool start(QString* error);

    // Copies a table, linked table or query into the engine once, its columns declared with
    // their field types and texts compared without regard to case, as Jet compares them; names
    // are matched as Jet SQL matches them, without regard to case. Null with *error set when
    // there is no such table or query or it cannot be read.
    const JetSourceSchema* load(const QString& name, QString* error);

    SqliteStatement prepare(const QString& sql, QString* error) const;
    // The rows a statement gives, each as its first value; nullopt with *error set when it
    // fails.
    std::optional<QList<QVariant>> firstValues(const QString& sql, QString* error) const;

    sqlite3* engine() const { return m_engine.get(); }
    // Hands the engine over, to whatever reads the query's rows after the workspace is gone.
    JetEngine release() { return std::move(m_engine); }

private:
    bool execute(const QString& sql, QString* error) const;

    DataSource& m_database;
    const JetCatalog& m_catalog;
    JetEngine m_engine;
    std::map<QString, std::unique_ptr<JetSourceSchema>> m_loaded; // by lower-case name
};

} // namespace tabulor
