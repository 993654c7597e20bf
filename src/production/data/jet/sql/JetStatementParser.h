#pragma once

#include "production/data/jet/sql/JetExpressionParser.h"

namespace tabulor {

// The SELECT statements of Jet SQL, on top of its expressions: DISTINCT, DISTINCTROW and TOP n,
// FROM with inner and outer joins, WHERE, GROUP BY, HAVING, UNION [ALL] and ORDER BY, and the
// subqueries inside expressions, which see their own sources first, then those of the
// statements around them. The sources a statement names are loaded through the translator.
class JetStatementParser final : public JetExpressionParser
{
public:
    using JetExpressionParser::JetExpressionParser;

    // SELECT ... [UNION [ALL] SELECT ...] [ORDER BY ...]
    QString selectStatement();

protected:
    QString subquery() override;

private:
    QString simpleSelect();
    QString orderBy();
    QString sourceList();
    QString joinedSource();
    QString singleSource();
    // The name after AS, or after a source without AS; an error when none follows.
    QString aliasName();

    static bool isKeyword(const QString& word);

    QString m_limit; // the TOP of the statement being read, as a LIMIT clause
};

} // namespace tabulor
