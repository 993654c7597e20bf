#include "production/data/jet/JetQueryStatements.h"

#include "production/data/jet/JetQueryClauses.h"
#include "production/data/jet/JetQueryWorkspace.h"
#include "production/data/jet/sql/JetSqlLiterals.h"
#include "production/data/jet/sql/JetSqlTranslator.h"

#include <QRegularExpression>

#include <algorithm>
#include <tuple>

namespace tabulor::JetQueryStatements {

namespace {

using Definition = JetQueryDefinition;

// How deep each character of a Jet expression lies inside parentheses; -1 inside a string, a
// [name] or a #date#, where nothing counts.
QList<int> nestingOf(const QString& jet)
{
    QList<int> depths(jet.size(), -1);
    int depth = 0;
    QChar closer;
    for (qsizetype i = 0; i < jet.size(); ++i) {
        const QChar c = jet[i];
        if (!closer.isNull()) {
            if (c == closer)
                closer = QChar();
        } else if (c == u'"' || c == u'\'' || c == u'#') {
            closer = c;
        } else if (c == u'[') {
            closer = u']';
        } else if (c == u'(') {
            depths[i] = depth++;
        } else if (c == u')') {
            depths[i] = --depth;
        } else {
            depths[i] = depth;
        }
    }
    return depths;
}

// A crosstab's column heading: its expression, and the values of its IN list when it has one,
// as Jet expressions.
struct ColumnHeading
{
    QString expression;
    std::optional<QStringList> listed;
};

ColumnHeading columnHeadingOf(const QString& jet)
{
    const QString text = jet.trimmed();
    const QList<int> depths = nestingOf(text);
    static const QRegularExpression in(QStringLiteral("\\bIn\\s*\\("),
                                       QRegularExpression::CaseInsensitiveOption);
    for (auto matches = in.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const qsizetype open = match.capturedEnd() - 1;
        const qsizetype close = text.size() - 1;
        // The list must be the last thing in the expression.
        if (depths[match.capturedStart()] != 0 || text[close] != u')' || depths[close] != 0 ||
            std::any_of(depths.begin() + open + 1, depths.begin() + close,
                        [](int depth) { return depth == 0; }))
            continue;
        QStringList values;
        qsizetype start = open + 1;
        for (qsizetype i = start; i <= close; ++i) {
            if (i == close || (depths[i] == 1 && text[i] == u',')) {
                values.append(text.mid(start, i - start).trimmed());
                start = i + 1;
            }
        }
        return {text.left(match.capturedStart()).trimmed(), values};
    }
    return {text, std::nullopt};
}

// Jet's limit on the columns of a query.
constexpr int MaxColumns = 255;

} // namespace

std::optional<QString> forSelect(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                                 QHash<QString, qint16>* columnTypes, QString* error)
{
    const QList<Definition::Row> flagRows = definition.rowsOf(Definition::FlagRow);
    const int flags = flagRows.isEmpty() ? 0 : flagRows[0].flag;
    if (flags & Definition::TopPercent) {
        *error = QStringLiteral("TOP ... PERCENT is not supported");
        return std::nullopt;
    }
    // The sources first, so that every expression knows their columns.
    const std::optional<QString> from = JetQueryClauses::from(translator, definition, error);
    if (!from)
        return std::nullopt;
    const QList<Definition::Row> columnRows = definition.rowsOf(Definition::ColumnRow);
    const QStringList names = JetQueryClauses::columnNames(columnRows);
    QStringList columns;
    for (qsizetype i = 0; i < columnRows.size(); ++i) {
        const Definition::Row& row = columnRows[i];
        const std::optional<JetSqlExpression> column = translator.expression(row.expression, error);
        if (!column)
            return std::nullopt;
        if (column->sql.endsWith(QLatin1String(".*"))) {
            columns.append(column->sql);
            continue;
        }
        const QString& name = names[i];
        columns.append(column->sql + QStringLiteral(" AS ") + JetSqlTranslator::quoted(name));
        columnTypes->insert(name, column->type);
    }
    if (flags & Definition::SelectStar)
        columns.append(QStringLiteral("*"));
    if (columns.isEmpty()) {
        *error = QStringLiteral("it selects no columns");
        return std::nullopt;
    }
    // DISTINCTROW keeps one row per record of the tables whose fields are shown; over those
    // fields (their keys among them, as a rule) that is DISTINCT. With * it changes nothing.
    const bool distinct = (flags & Definition::Distinct) ||
                          ((flags & Definition::DistinctRow) && !(flags & Definition::SelectStar));
    QString sql = QStringLiteral("SELECT ") + (distinct ? "DISTINCT " : "") +
                  columns.join(QStringLiteral(", "));
    if (!from->isEmpty())
        sql += QStringLiteral(" FROM ") + *from;
    for (const auto& [attribute, keyword, separator] :
         {std::tuple(Definition::WhereRow, "WHERE", QStringLiteral(" AND ")),
          std::tuple(Definition::GroupByRow, "GROUP BY", QStringLiteral(", ")),
          std::tuple(Definition::HavingRow, "HAVING", QStringLiteral(" AND ")),
          std::tuple(Definition::OrderByRow, "ORDER BY", QStringLiteral(", "))}) {
        const std::optional<QString> part = JetQueryClauses::clause(
            translator, definition.rowsOf(attribute), keyword, separator, error);
        if (!part)
            return std::nullopt;
        sql += *part;
    }
    if (flags & Definition::Top)
        sql += QStringLiteral(" LIMIT ") + QString::number(flagRows[0].name1.toLongLong());
    return sql;
}

std::optional<QString> forCrosstab(JetSqlTranslator& translator, const JetQueryWorkspace& workspace,
                                   const JetQueryDefinition& definition,
                                   QHash<QString, qint16>* columnTypes, QString* error)
{
    // Column rows and their grouping rows are marked: 2 a row heading, 1 the column heading,
    // 0 the value.
    enum Role
    {
        Heading = 1,
        RowHeading = 2
    };
    const std::optional<QString> from = JetQueryClauses::from(translator, definition, error);
    if (!from)
        return std::nullopt;
    QList<Definition::Row> rowHeadings;
    QList<Definition::Row> headings;
    QList<Definition::Row> values;
    for (const Definition::Row& row : definition.rowsOf(Definition::ColumnRow)) {
        if (row.flag == RowHeading)
            rowHeadings.append(row);
        else if (row.flag == Heading)
            headings.append(row);
        else
            values.append(row);
    }
    if (headings.size() != 1 || values.size() != 1) {
        *error = QStringLiteral("it needs one column heading and one value");
        return std::nullopt;
    }
    QList<Definition::Row> groups;
    for (const Definition::Row& row : definition.rowsOf(Definition::GroupByRow)) {
        if (row.flag != Heading)
            groups.append(row);
    }
    // Without an order of its own, a crosstab's rows come in the order of their headings.
    const QList<Definition::Row> orderRows = definition.rowsOf(Definition::OrderByRow);
    const struct
    {
        QList<Definition::Row> rows;
        const char* keyword;
        QString separator;
    } clauses[] = {{definition.rowsOf(Definition::WhereRow), "WHERE", QStringLiteral(" AND ")},
                   {groups, "GROUP BY", QStringLiteral(", ")},
                   {definition.rowsOf(Definition::HavingRow), "HAVING", QStringLiteral(" AND ")},
                   {orderRows.isEmpty() ? groups : orderRows, "ORDER BY", QStringLiteral(", ")}};
    QStringList tail;
    for (const auto& c : clauses) {
        const std::optional<QString> part =
            JetQueryClauses::clause(translator, c.rows, c.keyword, c.separator, error);
        if (!part)
            return std::nullopt;
        tail.append(*part);
    }
    const QString& where = tail.first();
    const ColumnHeading heading = columnHeadingOf(headings[0].expression);
    const std::optional<JetSqlExpression> headingSql =
        translator.expression(heading.expression, error);
    if (!headingSql)
        return std::nullopt;

    QString valuesSql;
    if (heading.listed) {
        QStringList listed;
        for (const QString& value : *heading.listed) {
            const std::optional<JetSqlExpression> sql = translator.expression(value, error);
            if (!sql)
                return std::nullopt;
            listed.append(u'(' + sql->sql + u')');
        }
        valuesSql = QStringLiteral("VALUES ") + listed.join(u',');
    } else {
        valuesSql = QStringLiteral("SELECT DISTINCT %1 FROM %2%3 ORDER BY 1")
                        .arg(headingSql->sql, *from, where);
    }
    const std::optional<QList<QVariant>> headingValues = workspace.firstValues(valuesSql, error);
    if (!headingValues)
        return std::nullopt;
    if (rowHeadings.size() + headingValues->size() > MaxColumns) {
        *error = QStringLiteral("it would have more than %1 columns").arg(MaxColumns);
        return std::nullopt;
    }

    QStringList columns;
    const QStringList names = JetQueryClauses::columnNames(rowHeadings);
    for (qsizetype i = 0; i < rowHeadings.size(); ++i) {
        const std::optional<JetSqlExpression> column =
            translator.expression(rowHeadings[i].expression, error);
        if (!column)
            return std::nullopt;
        columns.append(column->sql + QStringLiteral(" AS ") + JetSqlTranslator::quoted(names[i]));
        columnTypes->insert(names[i], column->type);
    }
    for (const QVariant& value : *headingValues) {
        QString name;
        QString condition;
        if (value.isNull()) {
            name = QStringLiteral("<>");
            condition = QStringLiteral("(%1) IS NULL").arg(headingSql->sql);
        } else if (value.typeId() == QMetaType::QString) {
            name = value.toString();
            condition = QStringLiteral("(%1) = %2").arg(headingSql->sql, sqlTextLiteral(name));
        } else if (value.metaType() == QMetaType::fromType<double>()) {
            // Named as Jet shows a double, compared with every digit it has.
            name = QString::number(value.toDouble(), 'g', 15);
            condition = QStringLiteral("(%1) = %2")
                            .arg(headingSql->sql, QString::number(value.toDouble(), 'g', 17));
        } else {
            name = value.toString();
            condition = QStringLiteral("(%1) = %2").arg(headingSql->sql, name);
        }
        translator.setAggregateCondition(condition);
        const std::optional<JetSqlExpression> cell =
            translator.expression(values[0].expression, error);
        translator.setAggregateCondition(QString());
        if (!cell)
            return std::nullopt;
        columns.append(cell->sql + QStringLiteral(" AS ") + JetSqlTranslator::quoted(name));
        columnTypes->insert(name, cell->type);
    }
    return QStringLiteral("SELECT ") + columns.join(QStringLiteral(", ")) +
           QStringLiteral(" FROM ") + *from + tail.join(QString());
}

std::optional<QString> forUnion(JetSqlTranslator& translator, const JetQueryDefinition& definition,
                                QString* error)
{
    QStringList parts;
    for (const Definition::Row& row : definition.rowsOf(Definition::SourceRow))
        parts.append(row.expression.trimmed().remove(QRegularExpression(QStringLiteral(";\\s*$"))));
    if (parts.size() < 2) {
        *error = QStringLiteral("its parts are missing");
        return std::nullopt;
    }
    const QList<Definition::Row> flagRows = definition.rowsOf(Definition::FlagRow);
    const bool all = !flagRows.isEmpty() && (flagRows[0].flag & Definition::UnionAll);
    QString jet = parts.join(all ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION "));
    // The order of the whole union is kept apart from its parts.
    QStringList keys;
    for (const Definition::Row& row : definition.rowsOf(Definition::OrderByRow))
        keys.append(row.expression +
                    (row.name1.compare(QLatin1String("D"), Qt::CaseInsensitive) == 0
                         ? QStringLiteral(" DESC")
                         : QString()));
    if (!keys.isEmpty())
        jet += QStringLiteral(" ORDER BY ") + keys.join(QStringLiteral(", "));
    return translator.statement(jet, error);
}

} // namespace tabulor::JetQueryStatements
