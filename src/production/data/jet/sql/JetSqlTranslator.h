#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tabulor {

// The columns of a table as it was loaded into the query engine, with their field types.
struct JetSourceSchema
{
    QString table;
    QStringList columns;
    QList<qint16> types;

    // The field type of a column (matched without regard to case), or nullopt.
    std::optional<qint16> typeOf(const QString& column) const;
};

// An expression in the engine's SQL with the field type it yields (0 when it cannot be told).
struct JetSqlExpression
{
    QString sql;
    qint16 type = 0;
};

// Translates the Jet SQL dialect into the embedded engine's: [bracketed] names, "strings",
// #m/d/yyyy# dates, True/False, & and + on text, \, Mod, ^, Like with * ? # and [lists],
// Is Null, Between, In, subqueries, the common functions (through the engine's own and the
// functions in JetSqlFunctions) and whole SELECT statements with joins, TOP and UNION. Dates
// become "yyyy-MM-dd[ HH:mm:ss]" text, which compares and sorts like the dates; booleans are
// -1 and 0. Anything it does not know fails with a message rather than guessing.
class JetSqlTranslator
{
public:
    // Finds a table or query by the name a statement uses and loads it, giving its columns;
    // null with *error set when there is none.
    using SourceLoader = std::function<const JetSourceSchema*(const QString& name, QString* error)>;

    explicit JetSqlTranslator(SourceLoader loader) : m_loader(std::move(loader)) {}

    // Makes a loaded source known under an alias for the expressions that follow.
    void addSource(const QString& alias, const JetSourceSchema* schema);
    // Loads a table or query for a FROM clause and makes it known under the alias; its text
    // in the engine's SQL, or an empty text with *error set.
    QString source(const QString& name, const QString& alias, QString* error);

    // One expression; nullopt with *error set when it cannot be translated.
    std::optional<JetSqlExpression> expression(const QString& jet, QString* error);
    // A whole SELECT statement (UNION parts, the text of subqueries).
    std::optional<QString> statement(const QString& jet, QString* error);

    // While set, every aggregate in the expressions that follow takes in only the rows for
    // which this condition (in the engine's SQL) holds, as a crosstab's cells do; empty for
    // all rows.
    void setAggregateCondition(const QString& condition) { m_aggregateCondition = condition; }

    // A name as an identifier of the engine: in double quotes, quotes inside doubled.
    static QString quoted(const QString& name);

private:
    struct Scope
    {
        QString alias;
        const JetSourceSchema* schema;
    };

    // The field type of a column named by its parts ([Table].[Column] or [Column]) in the
    // sources known, the innermost first; 0 when none has it.
    qint16 columnType(const QStringList& parts) const;

    SourceLoader m_loader;
    QList<Scope> m_scopes;
    QString m_aggregateCondition;

    friend class JetExpressionParser;
    friend class JetStatementParser;
};

} // namespace tabulor
