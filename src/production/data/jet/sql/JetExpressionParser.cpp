#include "production/data/jet/sql/JetExpressionParser.h"

#include "production/base/FieldType.h"
#include "production/data/jet/sql/JetSqlFunctionCalls.h"
#include "production/data/jet/sql/JetSqlLiterals.h"

namespace tabulor {

namespace {

using Kind = JetSqlLexeme::Kind;

// A fraction that is not money: money keeps its type in arithmetic.
bool isFractionNotMoney(qint16 type)
{
    return isFractional(type) && type != FieldCurrency;
}

// The type of an arithmetic result, after the Jet rules: any fraction makes a double, money
// stays money except in a division, a date moved by days stays a date.
qint16 arithmeticType(qint16 left, const QString& op, qint16 right)
{
    if (left == 0 || right == 0)
        return 0;
    if (op == u"+" || op == u"-") {
        if (left == FieldDate && right == FieldDate)
            return op == u"-" ? FieldDouble : FieldDate;
        if (left == FieldDate || right == FieldDate)
            return FieldDate;
    }
    if (isFractionNotMoney(left) || isFractionNotMoney(right) || op == u"/" || op == u"^")
        return FieldDouble;
    if (left == FieldCurrency || right == FieldCurrency)
        return FieldCurrency;
    return FieldLong;
}

// Mod and \ work on whole numbers, each side rounded first as CLng rounds it.
JetSqlExpression wholeNumberOperation(const JetSqlExpression& left, QStringView op,
                                      const JetSqlExpression& right)
{
    return {
        QStringLiteral("(CAST(jet_round(%1, 0) AS INTEGER) %2 CAST(jet_round(%3, 0) AS INTEGER))")
            .arg(left.sql, op, right.sql),
        FieldLong};
}

} // namespace

JetExpressionParser::JetExpressionParser(JetSqlTranslator& translator, QList<JetSqlLexeme> lexemes)
    : m_translator(translator), m_tokens(std::move(lexemes))
{
}

bool JetExpressionParser::atEnd() const
{
    return peek().kind == Kind::End || (isSymbol(u";") && next(1).kind == Kind::End);
}

JetSqlExpression JetExpressionParser::fail(const QString& message)
{
    if (m_error.isEmpty())
        m_error = message;
    return {};
}

const JetSqlLexeme& JetExpressionParser::next(qsizetype ahead) const
{
    return m_tokens[std::min(m_pos + ahead, m_tokens.size() - 1)];
}

JetSqlLexeme JetExpressionParser::take()
{
    const JetSqlLexeme lexeme = peek();
    if (lexeme.kind != Kind::End)
        ++m_pos;
    return lexeme;
}

bool JetExpressionParser::isSymbol(QStringView symbol) const
{
    return peek().kind == Kind::Symbol && peek().text == symbol;
}

bool JetExpressionParser::isWord(const char* word) const
{
    return peek().kind == Kind::Name &&
           peek().text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool JetExpressionParser::acceptWord(const char* word)
{
    if (!isWord(word))
        return false;
    ++m_pos;
    return true;
}

bool JetExpressionParser::acceptSymbol(QStringView symbol)
{
    if (!isSymbol(symbol))
        return false;
    ++m_pos;
    return true;
}

void JetExpressionParser::expectSymbol(QStringView symbol)
{
    if (!acceptSymbol(symbol))
        fail(QStringLiteral("'%1' was expected near '%2'").arg(symbol, peek().text));
}

JetSqlExpression JetExpressionParser::orExpression()
{
    JetSqlExpression left = andExpression();
    while (m_error.isEmpty() && acceptWord("OR")) {
        const JetSqlExpression right = andExpression();
        left = {QStringLiteral("(%1 OR %2)").arg(left.sql, right.sql), FieldBoolean};
    }
    if (isWord("XOR") || isWord("EQV") || isWord("IMP"))
        return fail(QStringLiteral("the operator %1 is not supported").arg(peek().text));
    return left;
}

JetSqlExpression JetExpressionParser::andExpression()
{
    JetSqlExpression left = notExpression();
    while (m_error.isEmpty() && acceptWord("AND")) {
        const JetSqlExpression right = notExpression();
        left = {QStringLiteral("(%1 AND %2)").arg(left.sql, right.sql), FieldBoolean};
    }
    return left;
}

JetSqlExpression JetExpressionParser::notExpression()
{
    if (acceptWord("NOT"))
        return {QStringLiteral("(NOT %1)").arg(notExpression().sql), FieldBoolean};
    return comparison();
}

JetSqlExpression JetExpressionParser::comparison()
{
    JetSqlExpression left = concatenation();
    if (!m_error.isEmpty())
        return left;
    for (const char* op : {"=", "<>", "<=", ">=", "<", ">"}) {
        if (acceptSymbol(QString::fromLatin1(op))) {
            const JetSqlExpression right = concatenation();
            return {QStringLiteral("(%1 %2 %3)").arg(left.sql, QString::fromLatin1(op), right.sql),
                    FieldBoolean};
        }
    }
    if (acceptWord("IS")) {
        const bool negated = acceptWord("NOT");
        if (!acceptWord("NULL"))
            return fail(QStringLiteral("Is must be followed by Null"));
        return {QStringLiteral("(%1 IS %2NULL)").arg(left.sql, negated ? "NOT " : ""),
                FieldBoolean};
    }
    const bool negated = acceptWord("NOT");
    const QString no = negated ? QStringLiteral("NOT ") : QString();
    if (acceptWord("LIKE")) {
        const JetSqlExpression pattern = concatenation();
        return {QStringLiteral("(%1jet_like(%2, %3))").arg(no, left.sql, pattern.sql),
                FieldBoolean};
    }
    if (acceptWord("BETWEEN")) {
        const JetSqlExpression low = concatenation();
        if (!acceptWord("AND"))
            return fail(QStringLiteral("Between needs And"));
        const JetSqlExpression high = concatenation();
        return {QStringLiteral("(%1 %2BETWEEN %3 AND %4)").arg(left.sql, no, low.sql, high.sql),
                FieldBoolean};
    }
    if (acceptWord("IN")) {
        expectSymbol(u"(");
        QString list;
        if (isWord("SELECT")) {
            list = subquery();
        } else {
            QStringList items;
            do {
                items.append(expression().sql);
            } while (m_error.isEmpty() && acceptSymbol(u","));
            list = items.join(QStringLiteral(", "));
        }
        expectSymbol(u")");
        return {QStringLiteral("(%1 %2IN (%3))").arg(left.sql, no, list), FieldBoolean};
    }
    if (negated)
        return fail(QStringLiteral("Not must be followed by Like, Between or In here"));
    return left;
}

// & joins texts; a missing value counts as empty text unless both are missing.
JetSqlExpression JetExpressionParser::concatenation()
{
    JetSqlExpression left = additive();
    while (m_error.isEmpty() && acceptSymbol(u"&")) {
        const JetSqlExpression right = additive();
        left = {QStringLiteral("jet_concat(%1, %2)").arg(left.sql, right.sql), FieldText};
    }
    return left;
}

JetSqlExpression JetExpressionParser::additive()
{
    JetSqlExpression left = modulo();
    while (m_error.isEmpty() && (isSymbol(u"+") || isSymbol(u"-"))) {
        const QString op = m_tokens[m_pos++].text;
        const JetSqlExpression right = modulo();
        // + on two texts joins them.
        if (op == u"+" && isText(left.type) && isText(right.type))
            left = {QStringLiteral("(%1 || %2)").arg(left.sql, right.sql), FieldText};
        else if (left.type == FieldDate || right.type == FieldDate)
            left = {QStringLiteral("jet_datearith(%1, '%2', %3)").arg(left.sql, op, right.sql),
                    arithmeticType(left.type, op, right.type)};
        else
            left = {QStringLiteral("(%1 %2 %3)").arg(left.sql, op, right.sql),
                    arithmeticType(left.type, op, right.type)};
    }
    return left;
}

JetSqlExpression JetExpressionParser::modulo()
{
    JetSqlExpression left = integerDivision();
    while (m_error.isEmpty() && acceptWord("MOD")) {
        const JetSqlExpression right = integerDivision();
        left = wholeNumberOperation(left, u"%", right);
    }
    return left;
}

JetSqlExpression JetExpressionParser::integerDivision()
{
    JetSqlExpression left = multiplicative();
    while (m_error.isEmpty() && acceptSymbol(u"\\")) {
        const JetSqlExpression right = multiplicative();
        left = wholeNumberOperation(left, u"/", right);
    }
    return left;
}

JetSqlExpression JetExpressionParser::multiplicative()
{
    JetSqlExpression left = unary();
    while (m_error.isEmpty() && (isSymbol(u"*") || isSymbol(u"/"))) {
        const QString op = m_tokens[m_pos++].text;
        const JetSqlExpression right = unary();
        // Jet divides as fractions even where both sides are whole numbers.
        const QString sql =
            op == u"/" ? QStringLiteral("(CAST(%1 AS REAL) / %2)") : QStringLiteral("(%1 * %2)");
        left = {sql.arg(left.sql, right.sql), arithmeticType(left.type, op, right.type)};
    }
    return left;
}

JetSqlExpression JetExpressionParser::unary()
{
    if (acceptSymbol(u"-")) {
        const JetSqlExpression operand = unary();
        return {QStringLiteral("(-%1)").arg(operand.sql), operand.type};
    }
    if (acceptSymbol(u"+"))
        return unary();
    JetSqlExpression base = primary();
    while (m_error.isEmpty() && acceptSymbol(u"^")) {
        const JetSqlExpression exponent = unary();
        base = {QStringLiteral("jet_pow(%1, %2)").arg(base.sql, exponent.sql), FieldDouble};
    }
    return base;
}

JetSqlExpression JetExpressionParser::primary()
{
    const JetSqlLexeme token = peek();
    switch (token.kind) {
    case Kind::End:
        return fail(QStringLiteral("the expression ends too early"));
    case Kind::String:
        ++m_pos;
        return {sqlTextLiteral(token.text), FieldText};
    case Kind::Number:
        ++m_pos;
        return {token.text,
                token.text.contains(u'.') || token.text.contains(u'e', Qt::CaseInsensitive)
                    ? FieldDouble
                    : FieldLong};
    case Kind::Date: {
        ++m_pos;
        const std::optional<QString> date = jetDateLiteral(token.text);
        if (!date)
            return fail(QStringLiteral("#%1# is not a date").arg(token.text));
        return {sqlTextLiteral(*date), FieldDate};
    }
    case Kind::Symbol:
        if (acceptSymbol(u"(")) {
            if (isWord("SELECT")) {
                const QString select = subquery();
                expectSymbol(u")");
                return {QStringLiteral("(%1)").arg(select), 0};
            }
            const JetSqlExpression inner = expression();
            expectSymbol(u")");
            return {QStringLiteral("(%1)").arg(inner.sql), inner.type};
        }
        if (acceptSymbol(u"*"))
            return {QStringLiteral("*"), 0};
        return fail(QStringLiteral("'%1' was not expected").arg(token.text));
    case Kind::Name:
        if (token.text.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0) {
            ++m_pos;
            return {QStringLiteral("NULL"), 0};
        }
        for (const char* word : {"TRUE", "YES", "ON"}) {
            if (acceptWord(word))
                return {QStringLiteral("-1"), FieldBoolean};
        }
        for (const char* word : {"FALSE", "NO", "OFF"}) {
            if (acceptWord(word))
                return {QStringLiteral("0"), FieldBoolean};
        }
        if (next(1).kind == Kind::Symbol && next(1).text == u"(")
            return functionCall();
        return name();
    case Kind::Bracketed:
        return name();
    }
    return {};
}

JetSqlExpression JetExpressionParser::functionCall()
{
    const QString function = m_tokens[m_pos].text;
    m_pos += 2;
    QList<JetSqlExpression> args;
    const bool distinct = acceptWord("DISTINCT");
    if (!acceptSymbol(u")")) {
        do {
            args.append(expression());
        } while (m_error.isEmpty() && acceptSymbol(u","));
        expectSymbol(u")");
    }
    if (!m_error.isEmpty())
        return {};
    const std::optional<JetSqlExpression> call = translateFunctionCall(
        function, std::move(args), distinct, m_translator.m_aggregateCondition, &m_error);
    return call.value_or(JetSqlExpression());
}

// [Table].[Column], Table.Column, Column, Table.* and Forms!Form!Control.
JetSqlExpression JetExpressionParser::name()
{
    QStringList parts;
    bool star = false;
    for (;;) {
        const JetSqlLexeme part = peek();
        if (part.kind != Kind::Name && part.kind != Kind::Bracketed)
            return fail(QStringLiteral("a name was expected near '%1'").arg(part.text));
        parts.append(part.text);
        ++m_pos;
        if (!(isSymbol(u".") || isSymbol(u"!")))
            break;
        ++m_pos;
        if (acceptSymbol(u"*")) {
            star = true;
            break;
        }
    }
    QStringList quoted;
    for (const QString& part : parts)
        quoted.append(JetSqlTranslator::quoted(part));
    if (star)
        return {quoted.join(u'.') + QStringLiteral(".*"), 0};
    return {quoted.join(u'.'), m_translator.columnType(parts)};
}

} // namespace tabulor
