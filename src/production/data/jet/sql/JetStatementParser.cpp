#include "production/data/jet/sql/JetStatementParser.h"

namespace tabulor {

namespace {

using Kind = JetSqlLexeme::Kind;

} // namespace

QString JetStatementParser::selectStatement()
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

QString JetStatementParser::subquery()
{
    // A subquery sees its own sources first, then those of the statements around it.
    const qsizetype outer = m_translator.m_scopes.size();
    const QString limit = std::exchange(m_limit, QString());
    QString sql = simpleSelect();
    if (m_error.isEmpty() && isWord("ORDER"))
        sql += orderBy();
    sql += m_limit;
    m_limit = limit;
    m_translator.m_scopes.remove(0, m_translator.m_scopes.size() - outer);
    return sql;
}

// SELECT [DISTINCT|DISTINCTROW] [TOP n] columns [FROM ...] [WHERE] [GROUP BY] [HAVING].
// The FROM clause is read first, so that the columns know the sources' types.
QString JetStatementParser::simpleSelect()
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
        const JetSqlLexeme count = take();
        if (count.kind != Kind::Number || acceptWord("PERCENT"))
            fail(QStringLiteral("only TOP with a number of rows is supported"));
        m_limit = QStringLiteral(" LIMIT ") + count.text;
    }
    const qsizetype columnsStart = m_pos;
    // The FROM of this statement: the first one outside parentheses.
    int depth = 0;
    qsizetype from = -1;
    for (qsizetype i = m_pos; m_tokens[i].kind != Kind::End; ++i) {
        const JetSqlLexeme& t = m_tokens[i];
        if (t.kind == Kind::Symbol && t.text == u"(")
            ++depth;
        else if (t.kind == Kind::Symbol && t.text == u")" && --depth < 0)
            break;
        else if (depth == 0 && t.kind == Kind::Name &&
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
        if (acceptWord("AS"))
            item += QStringLiteral(" AS ") + JetSqlTranslator::quoted(aliasName());
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

QString JetStatementParser::orderBy()
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

QString JetStatementParser::sourceList()
{
    QStringList sources;
    do {
        sources.append(joinedSource());
    } while (m_error.isEmpty() && acceptSymbol(u","));
    return sources.join(QStringLiteral(", "));
}

QString JetStatementParser::joinedSource()
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

QString JetStatementParser::singleSource()
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
    const JetSqlLexeme table = peek();
    if (table.kind != Kind::Name && table.kind != Kind::Bracketed) {
        fail(QStringLiteral("a table was expected near '%1'").arg(table.text));
        return {};
    }
    ++m_pos;
    QString alias = table.text;
    if (acceptWord("AS") || (peek().kind == Kind::Bracketed) ||
        (peek().kind == Kind::Name && !isKeyword(peek().text))) {
        alias = aliasName();
    }
    return m_translator.source(table.text, alias, &m_error);
}

QString JetStatementParser::aliasName()
{
    const JetSqlLexeme alias = take();
    if (alias.kind != Kind::Name && alias.kind != Kind::Bracketed)
        fail(QStringLiteral("a name was expected near '%1'").arg(alias.text));
    return alias.text;
}

bool JetStatementParser::isKeyword(const QString& word)
{
    static const QStringList keywords = {"INNER", "LEFT",  "RIGHT",  "JOIN",  "ON",   "WHERE",
                                         "GROUP", "ORDER", "HAVING", "UNION", "FROM", "IN"};
    return keywords.contains(word, Qt::CaseInsensitive);
}

} // namespace tabulor
