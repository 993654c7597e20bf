#include "production/data/jet/JetQueryClauses.h"

#include "production/data/jet/sql/JetSqlTranslator.h"

#include <QRegularExpression>

namespace tabulor::JetQueryClauses {

namespace {

// A source of the FROM clause, or sources joined into one.
struct JoinNode
{
    QStringList keys; // the names and aliases of the tables inside
    QString sql;
};

// A column's name when the query gives it none: the field's own name for a plain field,
// Expr1000, Expr1001 ... for anything else.
QString defaultColumnName(const QString& expression, int* unnamed)
{
    static const QRegularExpression field(
        QStringLiteral("^(?:(?:\\[[^\\]]*\\]|\\w+)\\.)?(?:\\[([^\\]]*)\\]|(\\w+))$"));
    const QRegularExpressionMatch m = field.match(expression.trimmed());
    if (m.hasMatch())
        return m.captured(1).isEmpty() ? m.captured(2) : m.captured(1);
    return QStringLiteral("Expr%1").arg(1000 + (*unnamed)++);
}

} // namespace

std::optional<QString> from(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                            QString* error)
{
    QList<JoinNode> nodes;
    for (const JetQueryDefinition::Row& row : definition.rowsOf(JetQueryDefinition::SourceRow)) {
        const QString alias = row.name2.isEmpty() ? row.name1 : row.name2;
        const QString sql = translator.source(row.name1, alias, error);
        if (sql.isEmpty())
            return std::nullopt;
        nodes.append({{alias}, sql});
    }
    const auto nodeOf = [&](const QString& key) {
        for (qsizetype i = 0; i < nodes.size(); ++i) {
            if (nodes[i].keys.contains(key, Qt::CaseInsensitive))
                return i;
        }
        return qsizetype(-1);
    };
    for (const JetQueryDefinition::Row& join : definition.rowsOf(JetQueryDefinition::JoinRow)) {
        const std::optional<JetSqlExpression> on = translator.expression(join.expression, error);
        if (!on)
            return std::nullopt;
        const qsizetype left = nodeOf(join.name1);
        const qsizetype right = nodeOf(join.name2);
        if (left < 0 || right < 0) {
            *error = QStringLiteral("a join names a table it does not read");
            return std::nullopt;
        }
        if (left == right) {
            // A further condition between two tables already joined.
            nodes[left].sql.insert(nodes[left].sql.size() - 1, QStringLiteral(" AND ") + on->sql);
            continue;
        }
        const char* kind = join.flag == 2 ? "LEFT" : join.flag == 3 ? "RIGHT" : "INNER";
        JoinNode joined{nodes[left].keys + nodes[right].keys,
                        QStringLiteral("(%1 %2 JOIN %3 ON %4)")
                            .arg(nodes[left].sql, QLatin1String(kind), nodes[right].sql, on->sql)};
        nodes.removeAt(std::max(left, right));
        nodes.removeAt(std::min(left, right));
        nodes.append(joined);
    }
    QStringList parts;
    for (const JoinNode& node : nodes)
        parts.append(node.sql);
    return parts.join(QStringLiteral(", "));
}

QStringList columnNames(const QList<JetQueryDefinition::Row>& columnRows)
{
    QStringList names;
    int unnamed = 0;
    for (const JetQueryDefinition::Row& row : columnRows)
        names.append(row.name1.isEmpty() ? defaultColumnName(row.expression, &unnamed) : row.name1);
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (names.count(names[i]) > 1 && columnRows[i].name1.isEmpty())
            names[i] = QString(columnRows[i].expression).remove(u'[').remove(u']');
    }
    return names;
}

std::optional<QString> clause(JetSqlTranslator& translator,
                              const QList<JetQueryDefinition::Row>& rows, const char* keyword,
                              const QString& separator, QString* error)
{
    QStringList parts;
    for (const JetQueryDefinition::Row& row : rows) {
        const std::optional<JetSqlExpression> part = translator.expression(row.expression, error);
        if (!part)
            return std::nullopt;
        const bool descending = row.attribute == JetQueryDefinition::OrderByRow &&
                                row.name1.compare(QLatin1String("D"), Qt::CaseInsensitive) == 0;
        parts.append(part->sql + (descending ? QStringLiteral(" DESC") : QString()));
    }
    if (parts.isEmpty())
        return QString();
    return u' ' + QLatin1String(keyword) + u' ' + parts.join(separator);
}

} // namespace tabulor::JetQueryClauses
