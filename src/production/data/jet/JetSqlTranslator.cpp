#include "production/data/jet/JetSqlTranslator.h"

#include "production/base/FieldType.h"

#include <QDate>
#include <QRegularExpression>

namespace tabulor {

namespace {

enum class Token
{
    Name,
    Bracketed,
    String,
    Number,
    Date,
    Symbol,
    End
};

struct Lexeme
{
    Token kind = Token::End;
    QString text;
};

// Splits Jet SQL into names, [bracketed names], strings, numbers, #dates# and symbols.
std::optional<QList<Lexeme>> tokenize(const QString& sql, QString* error)
{
    QList<Lexeme> tokens;
    qsizetype i = 0;
    const auto fail = [&](const QString& what) {
        *error = what;
        return std::nullopt;
    };
    while (i < sql.size()) {
        const QChar c = sql[i];
        if (c.isSpace()) {
            ++i;
        } else if (c == u'[') {
            const qsizetype end = sql.indexOf(u']', i + 1);
            if (end < 0)
                return fail(QStringLiteral("a name in brackets is not closed"));
            tokens.append({Token::Bracketed, sql.mid(i + 1, end - i - 1)});
            i = end + 1;
        } else if (c == u'"' || c == u'\'') {
            // A doubled quote stands for one quote inside the text.
            QString text;
            qsizetype j = i + 1;
            for (;; ++j) {
                if (j >= sql.size())
                    return fail(QStringLiteral("a text in quotes is not closed"));
                if (sql[j] == c) {
                    if (j + 1 < sql.size() && sql[j + 1] == c) {
                        text += c;
                        ++j;
                        continue;
                    }
                    break;
                }
                text += sql[j];
            }
            tokens.append({Token::String, text});
            i = j + 1;
        } else if (c == u'#') {
            const qsizetype end = sql.indexOf(u'#', i + 1);
            if (end < 0)
                return fail(QStringLiteral("a date in # signs is not closed"));
            tokens.append({Token::Date, sql.mid(i + 1, end - i - 1).trimmed()});
            i = end + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < sql.size() && sql[i + 1].isDigit())) {
            qsizetype j = i;
            while (j < sql.size() && (sql[j].isDigit() || sql[j] == u'.'))
                ++j;
            if (j < sql.size() && (sql[j] == u'e' || sql[j] == u'E')) {
                ++j;
                if (j < sql.size() && (sql[j] == u'+' || sql[j] == u'-'))
                    ++j;
                while (j < sql.size() && sql[j].isDigit())
                    ++j;
            }
            tokens.append({Token::Number, sql.mid(i, j - i)});
            i = j;
        } else if (c.isLetter() || c == u'_') {
            qsizetype j = i;
            while (j < sql.size() && (sql[j].isLetterOrNumber() || sql[j] == u'_'))
                ++j;
            tokens.append({Token::Name, sql.mid(i, j - i)});
            i = j;
        } else {
            const QString two = sql.mid(i, 2);
            if (two == u"<>" || two == u"<=" || two == u">=") {
                tokens.append({Token::Symbol, two});
                i += 2;
            } else if (QStringLiteral("=<>+-*/\\^&(),.!;").contains(c)) {
                tokens.append({Token::Symbol, QString(c)});
                ++i;
            } else {
                return fail(QStringLiteral("the character '%1' is not understood").arg(c));
            }
        }
    }
    tokens.append({Token::End, {}});
    return tokens;
}

QString sqlString(const QString& text)
{
    QString escaped = text;
    escaped.replace(u'\'', QLatin1String("''"));
    return u'\'' + escaped + u'\'';
}

// A date literal in the order Jet SQL always uses (month/day/year), or ISO; two-digit years
// 00-29 are 2000-2029, 30-99 are 1930-1999.
std::optional<QString> dateLiteral(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:(\\d{1,2})/(\\d{1,2})/(\\d{2,4})|(\\d{4})-(\\d{1,2})-(\\d{1,2}))"
                       "(?:\\s+(\\d{1,2}):(\\d{2})(?::(\\d{2}))?\\s*([AaPp][Mm])?)?$"));
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    int year = m.captured(4).isEmpty() ? m.captured(3).toInt() : m.captured(4).toInt();
    if (m.captured(4).isEmpty() && m.captured(3).size() <= 2)
        year += year < 30 ? 2000 : 1900;
    const int month = (m.captured(4).isEmpty() ? m.captured(1) : m.captured(5)).toInt();
    const int day = (m.captured(4).isEmpty() ? m.captured(2) : m.captured(6)).toInt();
    const QDate date(year, month, day);
    if (!date.isValid())
        return std::nullopt;
    QString result = date.toString(Qt::ISODate);
    if (!m.captured(7).isEmpty()) {
        int hour = m.captured(7).toInt();
        const QString half = m.captured(10).toUpper();
        if (half == u"PM" && hour < 12)
            hour += 12;
        else if (half == u"AM" && hour == 12)
            hour = 0;
        const QTime time(hour, m.captured(8).toInt(), m.captured(9).toInt());
        if (!time.isValid())
            return std::nullopt;
        if (time != QTime(0, 0))
            result += u' ' + time.toString(QStringLiteral("HH:mm:ss"));
    }
    return result;
}

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

struct FunctionRule
{
    const char* jet;
    const char* sql; // %1, %2 ... are the arguments; empty: the engine's name with all arguments
    int minArgs;
    int maxArgs;
    qint16 type; // -1: the first argument's type, -2: the second's
};

// The functions a query may use, the aggregates first. Aggregates keep their argument's type,
// as Jet does.
constexpr int AggregateCount = 7;
constexpr FunctionRule Functions[] = {
    {"Sum", "sum(%1)", 1, 1, -1},
    {"Avg", "avg(%1)", 1, 1, FieldDouble},
    {"Count", "count(%1)", 1, 1, FieldLong},
    {"Min", "min(%1)", 1, 1, -1},
    {"Max", "max(%1)", 1, 1, -1},
    {"First", "jet_first(%1)", 1, 1, -1},
    {"Last", "jet_last(%1)", 1, 1, -1},
    {"IIf", "CASE WHEN %1 THEN %2 ELSE %3 END", 3, 3, -2},
    {"Nz", "coalesce(%1, %2)", 1, 2, -1},
    {"Format", "jet_format(%1, %2)", 1, 2, FieldText},
    {"Left", "substr(%1, 1, %2)", 2, 2, FieldText},
    {"Right", "jet_right(%1, %2)", 2, 2, FieldText},
    {"Mid", "substr(%1, %2, %3)", 2, 3, FieldText},
    {"Len", "length(%1)", 1, 1, FieldLong},
    {"UCase", "upper(%1)", 1, 1, FieldText},
    {"LCase", "lower(%1)", 1, 1, FieldText},
    {"Trim", "trim(%1)", 1, 1, FieldText},
    {"LTrim", "ltrim(%1)", 1, 1, FieldText},
    {"RTrim", "rtrim(%1)", 1, 1, FieldText},
    {"InStr", "instr(%1, %2)", 2, 2, FieldLong},
    {"Replace", "replace(%1, %2, %3)", 3, 3, FieldText},
    {"Year", "jet_datepart('yyyy', %1)", 1, 1, FieldInteger},
    {"Month", "jet_datepart('m', %1)", 1, 1, FieldInteger},
    {"Day", "jet_datepart('d', %1)", 1, 1, FieldInteger},
    {"Weekday", "jet_datepart('w', %1)", 1, 1, FieldInteger},
    {"Hour", "jet_datepart('h', %1)", 1, 1, FieldInteger},
    {"Minute", "jet_datepart('n', %1)", 1, 1, FieldInteger},
    {"Second", "jet_datepart('s', %1)", 1, 1, FieldInteger},
    {"DatePart", "jet_datepart(%1, %2)", 2, 4, FieldInteger},
    {"DateSerial", "jet_dateserial(%1, %2, %3)", 3, 3, FieldDate},
    {"DateAdd", "jet_dateadd(%1, %2, %3)", 3, 3, FieldDate},
    {"CDate", "jet_cdate(%1)", 1, 1, FieldDate},
    {"CCur", "jet_round(%1, 4)", 1, 1, FieldCurrency},
    {"CDbl", "CAST(%1 AS REAL)", 1, 1, FieldDouble},
    {"CSng", "CAST(%1 AS REAL)", 1, 1, FieldSingle},
    {"CLng", "CAST(jet_round(%1, 0) AS INTEGER)", 1, 1, FieldLong},
    {"CInt", "CAST(jet_round(%1, 0) AS INTEGER)", 1, 1, FieldInteger},
    {"CStr", "CAST(%1 AS TEXT)", 1, 1, FieldText},
    {"Round", "jet_round(%1, %2)", 1, 2, -1},
    {"Int", "jet_int(%1)", 1, 1, -1},
    {"Fix", "CAST(%1 AS INTEGER)", 1, 1, -1},
    {"Abs", "abs(%1)", 1, 1, -1},
    {"Val", "CAST(%1 AS REAL)", 1, 1, FieldDouble},
};

const FunctionRule* findFunction(const QString& name)
{
    for (const FunctionRule& rule : Functions) {
        if (name.compare(QLatin1String(rule.jet), Qt::CaseInsensitive) == 0)
            return &rule;
    }
    return nullptr;
}

} // namespace

std::optional<qint16> JetSourceSchema::typeOf(const QString& column) const
{
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].compare(column, Qt::CaseInsensitive) == 0)
            return types[i];
    }
    return std::nullopt;
}

// A recursive-descent parser over the tokens of one text, writing the engine's SQL as it goes.
// Errors are kept in m_error; the first one ends the translation.
class JetSqlParser
{
public:
    JetSqlParser(JetSqlTranslator& owner, QList<Lexeme> tokens)
        : m_owner(owner), m_tokens(std::move(tokens))
    {
    }

    QString m_error;

    bool atEnd() const
    {
        return peek().kind == Token::End || (isSymbol(u";") && next(1).kind == Token::End);
    }

    JetSqlExpression expression() { return orExpression(); }

    // SELECT ... [UNION [ALL] SELECT ...] [ORDER BY ...]
    QString selectStatement()
    {
        QString sql = simpleSelect();
        while (m_error.isEmpty() && isWord("UNION")) {
            ++m_pos;
            const bool all = acceptWord("ALL");
            sql += all ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
            sql += simpleSelect();
        }
        if (m_error.isEmpty() && isWord("ORDER"))
            sql += orderBy();
        if (m_error.isEmpty() && !m_limit.isEmpty())
            sql += m_limit;
        return sql;
    }

private:
    JetSqlTranslator& m_owner;
    QList<Lexeme> m_tokens;
    qsizetype m_pos = 0;
    QString m_limit;

    const Lexeme& peek() const { return next(0); }
    const Lexeme& next(qsizetype ahead) const
    {
        return m_tokens[std::min(m_pos + ahead, m_tokens.size() - 1)];
    }
    bool isSymbol(QStringView symbol) const
    {
        return peek().kind == Token::Symbol && peek().text == symbol;
    }
    bool isWord(const char* word) const
    {
        return peek().kind == Token::Name &&
               peek().text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
    bool acceptWord(const char* word)
    {
        if (!isWord(word))
            return false;
        ++m_pos;
        return true;
    }
    bool acceptSymbol(QStringView symbol)
    {
        if (!isSymbol(symbol))
            return false;
        ++m_pos;
        return true;
    }
    JetSqlExpression fail(const QString& message)
    {
        if (m_error.isEmpty())
            m_error = message;
        return {};
    }
    void expectSymbol(QStringView symbol)
    {
        if (!acceptSymbol(symbol))
            fail(QStringLiteral("'%1' was expected near '%2'").arg(symbol, peek().text));
    }

    // Logical operators, lowest first.
    JetSqlExpression orExpression()
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
    JetSqlExpression andExpression()
    {
        JetSqlExpression left = notExpression();
        while (m_error.isEmpty() && acceptWord("AND")) {
            const JetSqlExpression right = notExpression();
            left = {QStringLiteral("(%1 AND %2)").arg(left.sql, right.sql), FieldBoolean};
        }
        return left;
    }
    JetSqlExpression notExpression()
    {
        if (acceptWord("NOT"))
            return {QStringLiteral("(NOT %1)").arg(notExpression().sql), FieldBoolean};
        return comparison();
    }
    JetSqlExpression comparison()
    {
        JetSqlExpression left = concatenation();
        if (!m_error.isEmpty())
            return left;
        for (const char* op : {"=", "<>", "<=", ">=", "<", ">"}) {
            if (acceptSymbol(QString::fromLatin1(op))) {
                const JetSqlExpression right = concatenation();
                return {
                    QStringLiteral("(%1 %2 %3)").arg(left.sql, QString::fromLatin1(op), right.sql),
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
    JetSqlExpression concatenation()
    {
        JetSqlExpression left = additive();
        while (m_error.isEmpty() && acceptSymbol(u"&")) {
            const JetSqlExpression right = additive();
            left = {QStringLiteral("jet_concat(%1, %2)").arg(left.sql, right.sql), FieldText};
        }
        return left;
    }
    JetSqlExpression additive()
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
    JetSqlExpression modulo()
    {
        JetSqlExpression left = integerDivision();
        while (m_error.isEmpty() && acceptWord("MOD")) {
            const JetSqlExpression right = integerDivision();
            left = {QStringLiteral("(CAST(jet_round(%1, 0) AS INTEGER) % CAST(jet_round(%2, 0) "
                                   "AS INTEGER))")
                        .arg(left.sql, right.sql),
                    FieldLong};
        }
        return left;
    }
    JetSqlExpression integerDivision()
    {
        JetSqlExpression left = multiplicative();
        while (m_error.isEmpty() && acceptSymbol(u"\\")) {
            const JetSqlExpression right = multiplicative();
            left = {QStringLiteral("(CAST(jet_round(%1, 0) AS INTEGER) / CAST(jet_round(%2, 0) "
                                   "AS INTEGER))")
                        .arg(left.sql, right.sql),
                    FieldLong};
        }
        return left;
    }
    JetSqlExpression multiplicative()
    {
        JetSqlExpression left = unary();
        while (m_error.isEmpty() && (isSymbol(u"*") || isSymbol(u"/"))) {
            const QString op = m_tokens[m_pos++].text;
            const JetSqlExpression right = unary();
            // Jet divides as fractions even where both sides are whole numbers.
            const QString sql = op == u"/" ? QStringLiteral("(CAST(%1 AS REAL) / %2)")
                                           : QStringLiteral("(%1 * %2)");
            left = {sql.arg(left.sql, right.sql), arithmeticType(left.type, op, right.type)};
        }
        return left;
    }
    JetSqlExpression unary()
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

    JetSqlExpression primary()
    {
        const Lexeme token = peek();
        switch (token.kind) {
        case Token::End:
            return fail(QStringLiteral("the expression ends too early"));
        case Token::String:
            ++m_pos;
            return {sqlString(token.text), FieldText};
        case Token::Number:
            ++m_pos;
            return {token.text,
                    token.text.contains(u'.') || token.text.contains(u'e', Qt::CaseInsensitive)
                        ? FieldDouble
                        : FieldLong};
        case Token::Date: {
            ++m_pos;
            const std::optional<QString> date = dateLiteral(token.text);
            if (!date)
                return fail(QStringLiteral("#%1# is not a date").arg(token.text));
            return {sqlString(*date), FieldDate};
        }
        case Token::Symbol:
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
        case Token::Name:
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
            if (next(1).kind == Token::Symbol && next(1).text == u"(")
                return functionCall();
            return name();
        case Token::Bracketed:
            return name();
        }
        return {};
    }

    JetSqlExpression functionCall()
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
        const FunctionRule* rule = findFunction(function);
        if (!rule)
            return fail(QStringLiteral("the function %1 is not supported").arg(function));
        if (args.size() < rule->minArgs || args.size() > rule->maxArgs)
            return fail(QStringLiteral("%1 takes %2 to %3 arguments")
                            .arg(function)
                            .arg(rule->minArgs)
                            .arg(rule->maxArgs));
        if (rule < Functions + AggregateCount && !m_owner.m_aggregateCondition.isEmpty()) {
            JetSqlExpression& counted = args.first();
            counted.sql = QStringLiteral("CASE WHEN %1 THEN %2 END")
                              .arg(m_owner.m_aggregateCondition,
                                   counted.sql == u"*" ? QStringLiteral("1") : counted.sql);
        }
        QString sql = QString::fromLatin1(rule->sql);
        // Missing optional arguments: Nz gives empty text, Format the value's own text,
        // Mid the rest of the text, Round whole numbers.
        static const char* const defaults[] = {"", "''", "-1", "0"};
        for (int i = 0; i < 4; ++i) {
            const QString marker = u'%' + QString::number(i + 1);
            if (!sql.contains(marker))
                continue;
            QString value;
            if (i < args.size())
                value = args[i].sql;
            else if (function.compare(QLatin1String("Mid"), Qt::CaseInsensitive) == 0)
                value = QStringLiteral("-1");
            else
                value = QLatin1String(defaults[std::min(i, 3)]);
            if (i == 0 && distinct)
                value = QStringLiteral("DISTINCT ") + value;
            sql.replace(marker, value);
        }
        // substr() takes a negative length from the end; Mid without one reads to the end.
        sql.replace(QStringLiteral("substr(%1, %2, -1)").arg(args.value(0).sql, args.value(1).sql),
                    QStringLiteral("substr(%1, %2)").arg(args.value(0).sql, args.value(1).sql));
        qint16 type = rule->type;
        if (type == -1)
            type = args.value(0).type;
        else if (type == -2)
            type = args.value(1).type ? args.value(1).type : args.value(2).type;
        return {sql, type};
    }

    // [Table].[Column], Table.Column, Column, Table.* and Forms!Form!Control.
    JetSqlExpression name()
    {
        QStringList parts;
        bool star = false;
        for (;;) {
            const Lexeme part = peek();
            if (part.kind != Token::Name && part.kind != Token::Bracketed)
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
        return {quoted.join(u'.'), columnType(parts)};
    }

    qint16 columnType(const QStringList& parts) const
    {
        const QString column = parts.constLast();
        for (const JetSqlTranslator::Scope& scope : m_owner.m_scopes) {
            if (parts.size() == 2 && scope.alias.compare(parts[0], Qt::CaseInsensitive) != 0)
                continue;
            if (parts.size() > 2)
                break;
            if (const std::optional<qint16> type = scope.schema->typeOf(column))
                return *type;
        }
        return 0;
    }

    QString subquery()
    {
        // A subquery sees its own sources first, then those of the statements around it.
        const qsizetype outer = m_owner.m_scopes.size();
        const QString limit = std::exchange(m_limit, QString());
        QString sql = simpleSelect();
        if (m_error.isEmpty() && isWord("ORDER"))
            sql += orderBy();
        sql += m_limit;
        m_limit = limit;
        m_owner.m_scopes.remove(0, m_owner.m_scopes.size() - outer);
        return sql;
    }

    // SELECT [DISTINCT|DISTINCTROW] [TOP n] columns [FROM ...] [WHERE] [GROUP BY] [HAVING].
    // The FROM clause is read first, so that the columns know the sources' types.
    QString simpleSelect()
    {
        if (!acceptWord("SELECT")) {
            fail(QStringLiteral("SELECT was expected near '%1'").arg(peek().text));
            return {};
        }
        QString head = QStringLiteral("SELECT ");
        if (acceptWord("DISTINCT"))
            head += QStringLiteral("DISTINCT ");
        else if (!acceptWord("DISTINCTROW"))
            acceptWord("ALL");
        if (acceptWord("TOP")) {
            const Lexeme count = peek();
            ++m_pos;
            if (count.kind != Token::Number || acceptWord("PERCENT"))
                fail(QStringLiteral("only TOP with a number of rows is supported"));
            m_limit = QStringLiteral(" LIMIT ") + count.text;
        }
        const qsizetype columnsStart = m_pos;
        // The FROM of this statement: the first one outside parentheses.
        int depth = 0;
        qsizetype from = -1;
        for (qsizetype i = m_pos; m_tokens[i].kind != Token::End; ++i) {
            const Lexeme& t = m_tokens[i];
            if (t.kind == Token::Symbol && t.text == u"(")
                ++depth;
            else if (t.kind == Token::Symbol && t.text == u")" && --depth < 0)
                break;
            else if (depth == 0 && t.kind == Token::Name &&
                     (t.text.compare(QLatin1String("FROM"), Qt::CaseInsensitive) == 0 ||
                      t.text.compare(QLatin1String("UNION"), Qt::CaseInsensitive) == 0)) {
                if (t.text.compare(QLatin1String("FROM"), Qt::CaseInsensitive) == 0)
                    from = i;
                break;
            }
        }
        QString sources;
        qsizetype afterFrom = m_pos;
        if (from >= 0) {
            m_pos = from + 1;
            sources = QStringLiteral(" FROM ") + sourceList();
            afterFrom = m_pos;
            m_pos = columnsStart;
        }
        QStringList columns;
        do {
            const JetSqlExpression column = expression();
            QString item = column.sql;
            if (acceptWord("AS")) {
                const Lexeme alias = peek();
                ++m_pos;
                item += QStringLiteral(" AS ") + JetSqlTranslator::quoted(alias.text);
            }
            columns.append(item);
        } while (m_error.isEmpty() && acceptSymbol(u","));
        if (from >= 0)
            m_pos = afterFrom;
        QString sql = head + columns.join(QStringLiteral(", ")) + sources;
        if (m_error.isEmpty() && acceptWord("WHERE"))
            sql += QStringLiteral(" WHERE ") + expression().sql;
        if (m_error.isEmpty() && acceptWord("GROUP")) {
            if (!acceptWord("BY"))
                fail(QStringLiteral("GROUP must be followed by BY"));
            QStringList groups;
            do {
                groups.append(expression().sql);
            } while (m_error.isEmpty() && acceptSymbol(u","));
            sql += QStringLiteral(" GROUP BY ") + groups.join(QStringLiteral(", "));
        }
        if (m_error.isEmpty() && acceptWord("HAVING"))
            sql += QStringLiteral(" HAVING ") + expression().sql;
        return sql;
    }

    QString orderBy()
    {
        ++m_pos;
        if (!acceptWord("BY"))
            fail(QStringLiteral("ORDER must be followed by BY"));
        QStringList keys;
        do {
            QString key = expression().sql;
            if (acceptWord("DESC"))
                key += QStringLiteral(" DESC");
            else
                acceptWord("ASC");
            keys.append(key);
        } while (m_error.isEmpty() && acceptSymbol(u","));
        return QStringLiteral(" ORDER BY ") + keys.join(QStringLiteral(", "));
    }

    QString sourceList()
    {
        QStringList sources;
        do {
            sources.append(joinedSource());
        } while (m_error.isEmpty() && acceptSymbol(u","));
        return sources.join(QStringLiteral(", "));
    }

    QString joinedSource()
    {
        QString sql = singleSource();
        while (m_error.isEmpty()) {
            QString kind;
            if (acceptWord("INNER"))
                kind = QStringLiteral("INNER");
            else if (acceptWord("LEFT"))
                kind = QStringLiteral("LEFT");
            else if (acceptWord("RIGHT"))
                kind = QStringLiteral("RIGHT");
            else
                break;
            acceptWord("OUTER");
            if (!acceptWord("JOIN")) {
                fail(QStringLiteral("JOIN was expected after %1").arg(kind));
                break;
            }
            const QString right = singleSource();
            if (!acceptWord("ON")) {
                fail(QStringLiteral("a join needs ON"));
                break;
            }
            sql = QStringLiteral("%1 %2 JOIN %3 ON %4").arg(sql, kind, right, expression().sql);
        }
        return sql;
    }

    QString singleSource()
    {
        if (acceptSymbol(u"(")) {
            if (isWord("SELECT")) {
                fail(QStringLiteral("a subquery as a source is not supported"));
                return {};
            }
            const QString inner = joinedSource();
            expectSymbol(u")");
            return u'(' + inner + u')';
        }
        const Lexeme table = peek();
        if (table.kind != Token::Name && table.kind != Token::Bracketed) {
            fail(QStringLiteral("a table was expected near '%1'").arg(table.text));
            return {};
        }
        ++m_pos;
        QString alias = table.text;
        if (acceptWord("AS") || (peek().kind == Token::Bracketed) ||
            (peek().kind == Token::Name && !isKeyword(peek().text))) {
            alias = peek().text;
            ++m_pos;
        }
        return m_owner.source(table.text, alias, &m_error);
    }

    static bool isKeyword(const QString& word)
    {
        static const QStringList keywords = {"INNER", "LEFT",  "RIGHT",  "JOIN",  "ON",   "WHERE",
                                             "GROUP", "ORDER", "HAVING", "UNION", "FROM", "IN"};
        return keywords.contains(word, Qt::CaseInsensitive);
    }
};

void JetSqlTranslator::addSource(const QString& alias, const JetSourceSchema* schema)
{
    m_scopes.prepend({alias, schema});
}

QString JetSqlTranslator::source(const QString& name, const QString& alias, QString* error)
{
    QString problem;
    const JetSourceSchema* schema = m_loader(name, &problem);
    if (!schema) {
        if (error->isEmpty())
            *error = problem;
        return {};
    }
    addSource(alias, schema);
    QString sql = quoted(schema->table);
    if (alias != name)
        sql += QStringLiteral(" AS ") + quoted(alias);
    return sql;
}

std::optional<JetSqlExpression> JetSqlTranslator::expression(const QString& jet, QString* error)
{
    std::optional<QList<Lexeme>> tokens = tokenize(jet, error);
    if (!tokens)
        return std::nullopt;
    JetSqlParser parser(*this, std::move(*tokens));
    const JetSqlExpression result = parser.expression();
    if (parser.m_error.isEmpty() && !parser.atEnd())
        parser.m_error = QStringLiteral("'%1' is more than one expression").arg(jet);
    if (!parser.m_error.isEmpty()) {
        *error = parser.m_error;
        return std::nullopt;
    }
    return result;
}

std::optional<QString> JetSqlTranslator::statement(const QString& jet, QString* error)
{
    std::optional<QList<Lexeme>> tokens = tokenize(jet, error);
    if (!tokens)
        return std::nullopt;
    JetSqlParser parser(*this, std::move(*tokens));
    const QString sql = parser.selectStatement();
    if (parser.m_error.isEmpty() && !parser.atEnd())
        parser.m_error = QStringLiteral("the statement goes on after its end: '%1'").arg(jet);
    if (!parser.m_error.isEmpty()) {
        *error = parser.m_error;
        return std::nullopt;
    }
    return sql;
}

QString JetSqlTranslator::quoted(const QString& name)
{
    QString text = name;
    text.replace(u'"', QLatin1String("\"\""));
    return u'"' + text + u'"';
}

} // namespace tabulor
