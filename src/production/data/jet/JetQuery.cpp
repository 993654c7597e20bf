#include "production/data/jet/JetQuery.h"

#include "production/data/jet/JetCatalog.h"
#include "production/data/jet/JetQueryDefinition.h"
#include "production/data/jet/JetQueryRecordset.h"
#include "production/data/jet/JetQueryStatements.h"
#include "production/data/jet/JetQueryWorkspace.h"
#include "production/data/jet/sql/JetSqlTranslator.h"

#include <sqlite3.h>

namespace tabulor::JetQuery {

namespace {

// Queries reading queries reading queries: a definition that comes back to itself ends here.
constexpr int MaxNesting = 16;

std::unique_ptr<Recordset> run(DataSource& database, const JetHandle& file,
                               const JetCatalog& catalog, const JetObject& query,
                               std::optional<qint64> rowLimit, QString* problem)
{
    const std::optional<JetQueryDefinition> definition =
        JetQueryDefinition::read(file, query, problem);
    if (!definition)
        return nullptr;
    const JetQueryDefinition::Kind kind = definition->kind();
    if (kind == JetQueryDefinition::Kind::Action) {
        *problem = QStringLiteral("it is an action, data-definition or pass-through query, "
                                  "which changes data or runs elsewhere");
        return nullptr;
    }
    const QList<JetQueryDefinition::Row> parameters =
        definition->rowsOf(JetQueryDefinition::ParameterRow);
    if (!parameters.isEmpty()) {
        QStringList names;
        for (const JetQueryDefinition::Row& row : parameters)
            names.append(row.name1);
        *problem =
            QStringLiteral("it asks for parameters (%1)").arg(names.join(QStringLiteral(", ")));
        return nullptr;
    }
    if (!definition->rowsOf(JetQueryDefinition::RemoteDatabaseRow).isEmpty()) {
        *problem = QStringLiteral("it reads another database");
        return nullptr;
    }

    JetQueryWorkspace workspace(database, catalog);
    if (!workspace.start(problem))
        return nullptr;
    JetSqlTranslator translator(
        [&workspace](const QString& name, QString* error) { return workspace.load(name, error); });
    QHash<QString, qint16> columnTypes;
    std::optional<QString> sql;
    if (kind == JetQueryDefinition::Kind::Union)
        sql = JetQueryStatements::forUnion(translator, *definition, problem);
    else if (kind == JetQueryDefinition::Kind::Crosstab)
        sql = JetQueryStatements::forCrosstab(translator, workspace, *definition, &columnTypes,
                                              problem);
    else
        sql = JetQueryStatements::forSelect(translator, *definition, &columnTypes, problem);
    if (!sql)
        return nullptr;
    SqliteStatement statement = workspace.prepare(*sql, problem);
    if (!statement)
        return nullptr;
    // A negative limit means no rows, as for tables.
    if (rowLimit)
        rowLimit = std::max<qint64>(*rowLimit, 0);
    auto records =
        std::make_unique<JetQueryRecordset>(workspace.release(), std::move(statement), rowLimit);
    const int first = records->step();
    if (first != SQLITE_ROW && first != SQLITE_DONE) {
        *problem = records->lastError();
        return nullptr;
    }
    records->describe(columnTypes);
    return records;
}

} // namespace

std::unique_ptr<Recordset> open(DataSource& database, const JetHandle& file,
                                const JetCatalog& catalog, const JetObject& query,
                                std::optional<qint64> rowLimit, int& nesting, QString* error)
{
    QString problem;
    std::unique_ptr<Recordset> records;
    if (nesting >= MaxNesting) {
        problem = QStringLiteral("its queries read each other in a circle");
    } else {
        ++nesting;
        records = run(database, file, catalog, query, rowLimit, &problem);
        --nesting;
    }
    if (!records && error)
        *error = QStringLiteral("The query '%1' cannot be run: %2.").arg(query.name, problem);
    return records;
}

} // namespace tabulor::JetQuery
