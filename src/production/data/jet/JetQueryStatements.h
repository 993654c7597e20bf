#pragma once

#include "production/data/jet/JetQueryDefinition.h"

#include <QHash>
#include <QString>

#include <optional>

namespace tabulor {

class JetQueryWorkspace;
class JetSqlTranslator;

// The statement of a saved query in the engine's SQL, rebuilt from its definition by its kind.
// The sources are loaded through the translator. Where the engine cannot tell the type of a
// column it computes, columnTypes receives the field type by the column's name. Each fails
// with nullopt and *error set when the query cannot be run here.
namespace JetQueryStatements {

// A select query: DISTINCT, DISTINCTROW, TOP n, its columns, sources, joins, conditions,
// grouping and order.
std::optional<QString> forSelect(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                                 QHash<QString, qint16>* columnTypes, QString* error);

// A crosstab query: the row headings grouped, then a column for each value of the column
// heading (those of its IN list in their order, else every value the rows give, in order,
// which the workspace finds), each holding the value aggregated over the rows of its row and
// heading. A column is named by its heading's value as text; rows without a heading fall in
// the column "<>".
std::optional<QString> forCrosstab(JetSqlTranslator& translator, const JetQueryWorkspace& workspace,
                                   const JetQueryDefinition& definition,
                                   QHash<QString, qint16>* columnTypes, QString* error);

// A union query: its parts, kept as Jet SQL text, joined by UNION or UNION ALL and ordered as
// a whole.
std::optional<QString> forUnion(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                                QString* error);

} // namespace JetQueryStatements

} // namespace tabulor
