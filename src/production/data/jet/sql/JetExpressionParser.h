#pragma once

#include "production/data/jet/sql/JetSqlLexer.h"
#include "production/data/jet/sql/JetSqlTranslator.h"

#include <QList>
#include <QString>
#include <QStringView>

namespace tabulor {

// The expressions of Jet SQL, read by recursive descent from the lexemes of one text and
// written in the engine's SQL as they are read, each with the field type it yields: the
// logical, comparison, text and arithmetic operators, literals, function calls and names of
// columns, whose types come from the sources the translator knows. Subqueries are left to the
// statement grammar built on this one. The first error ends the translation; it is kept.
class JetExpressionParser
{
public:
    JetExpressionParser(JetSqlTranslator& translator, QList<JetSqlLexeme> lexemes);
    virtual ~JetExpressionParser() = default;

    JetSqlExpression expression() { return orExpression(); }

    // Whether the text is read to its end, or to a ";" that ends it.
    bool atEnd() const;
    // The first error, empty while there is none.
    const QString& error() const { return m_error; }
    // Keeps a message as the error, unless there is one already; an empty expression.
    JetSqlExpression fail(const QString& message);

protected:
    // A SELECT statement inside parentheses, standing on SELECT, in the engine's SQL.
    virtual QString subquery() = 0;

    const JetSqlLexeme& peek() const { return next(0); }
    const JetSqlLexeme& next(qsizetype ahead) const;
    // The lexeme read now, stepping past it unless it is the end of the text.
    JetSqlLexeme take();
    bool isSymbol(QStringView symbol) const;
    bool isWord(const char* word) const;
    bool acceptWord(const char* word);
    bool acceptSymbol(QStringView symbol);
    void expectSymbol(QStringView symbol);

    JetSqlTranslator& m_translator;
    QList<JetSqlLexeme> m_tokens;
    qsizetype m_pos = 0;
    QString m_error;

private:
    // Operators, lowest precedence first.
    JetSqlExpression orExpression();
    JetSqlExpression andExpression();
    JetSqlExpression notExpression();
    JetSqlExpression comparison();
    JetSqlExpression concatenation();
    JetSqlExpression additive();
    JetSqlExpression modulo();
    JetSqlExpression integerDivision();
    JetSqlExpression multiplicative();
    JetSqlExpression unary();

    JetSqlExpression primary();
    JetSqlExpression functionCall();
    JetSqlExpression name();
};

} // namespace tabulor
