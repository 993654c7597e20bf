#pragma once

#include "production/data/jet/sql/JetSqlTranslator.h"

#include <QList>
#include <QString>

#include <optional>

namespace tabulor {

// A call of a Jet function written in the engine's SQL, its arguments already translated: the
// aggregates (Sum, Avg, Count, Min, Max, First, Last, which keep their argument's type as Jet
// does), IIf, Nz, Format, the text functions, the date parts and date arithmetic, the
// conversions and the rounding functions. Missing optional arguments take Jet's defaults.
// With `distinct` the first argument is preceded by DISTINCT, as in Count(DISTINCT x). While
// `aggregateCondition` is not empty, an aggregate takes in only the rows where that condition
// (in the engine's SQL) holds. Nullopt with *error set for a function that is not supported
// or a wrong number of arguments.
std::optional<JetSqlExpression> translateFunctionCall(const QString& function,
                                                      QList<JetSqlExpression> args, bool distinct,
                                                      const QString& aggregateCondition,
                                                      QString* error);

} // namespace tabulor
