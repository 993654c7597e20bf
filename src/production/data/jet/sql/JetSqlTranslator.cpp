#include "production/data/jet/sql/JetSqlTranslator.h"

#include "production/data/jet/sql/JetSqlLexer.h"
#include "production/data/jet/sql/JetStatementParser.h"

namespace tabulor {

namespace {

// Reads a whole text with `read`, which must take it to its end; otherwise the error is
// `goesOn` with the text in place of %1.
template <typename Read>
auto translateWhole(JetSqlTranslator& translator, const QString& jet, const char* goesOn,
                    QString* error, Read read)
    -> std::optional<decltype(read(std::declval<JetStatementParser&>()))>
{
    std::optional<QList<JetSqlLexeme>> lexemes = tokenizeJetSql(jet, error);
    if (!lexemes)
        return std::nullopt;
    JetStatementParser parser(translator, std::move(*lexemes));
    auto result = read(parser);
    if (parser.error().isEmpty() && !parser.atEnd())
        parser.fail(QString::fromLatin1(goesOn).arg(jet));
    if (!parser.error().isEmpty()) {
        *error = parser.error();
        return std::nullopt;
    }
    return result;
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
    return translateWhole(*this, jet, "'%1' is more than one expression", error,
                          [](JetStatementParser& parser) { return parser.expression(); });
}

std::optional<QString> JetSqlTranslator::statement(const QString& jet, QString* error)
{
    return translateWhole(*this, jet, "the statement goes on after its end: '%1'", error,
                          [](JetStatementParser& parser) { return parser.selectStatement(); });
}

QString JetSqlTranslator::quoted(const QString& name)
{
    QString text = name;
    text.replace(u'"', QLatin1String("\"\""));
    return u'"' + text + u'"';
}

qint16 JetSqlTranslator::columnType(const QStringList& parts) const
{
    const QString column = parts.constLast();
    for (const Scope& scope : m_scopes) {
        if (parts.size() == 2 && scope.alias.compare(parts[0], Qt::CaseInsensitive) != 0)
            continue;
        if (parts.size() > 2)
            break;
        if (const std::optional<qint16> type = scope.schema->typeOf(column))
            return *type;
    }
    return 0;
}

} // namespace tabulor
