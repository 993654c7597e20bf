#pragma once

#include "production/data/jet/JetQueryDefinition.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tabulor {

class JetSqlTranslator;

// The parts that select and crosstab queries rebuild from their definitions alike, written in
// the engine's SQL. Each fails with nullopt and *error set when an expression cannot be
// translated or a source cannot be loaded.
namespace JetQueryClauses {

// The sources, loaded through the translator so that the expressions that follow know their
// columns: each alone, until a join row puts two of them together.
std::optional<QString> from(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                            QString* error);

// The names of a query's columns: their aliases, else the field's own name for a plain field
// and Expr1000, Expr1001 ... for anything else. Fields shown under the same name are told
// apart by their tables, as Jet does.
QStringList columnNames(const QList<JetQueryDefinition::Row>& columnRows);

// A clause made of the expressions of some definition rows joined by `separator`: WHERE and
// HAVING conditions, GROUP BY and ORDER BY keys (with DESC where a key says D). Empty without
// rows.
std::optional<QString> clause(JetSqlTranslator& translator,
                              const QList<JetQueryDefinition::Row>& rows, const char* keyword,
                              const QString& separator, QString* error);

} // namespace JetQueryClauses

} // namespace tabulor
