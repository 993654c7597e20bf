#include "production/data/jet/JetQuery.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/DataSource.h"
#include "production/data/jet/JetCatalog.h"
#include "production/data/jet/JetHandle.h"
#include "production/data/jet/JetRecordset.h"
#include "production/data/jet/JetSqlFunctions.h"
#include "production/data/jet/sql/JetSqlTranslator.h"
#include "production/data/sqlite/SqliteConnection.h"
#include "production/data/sqlite/SqliteValues.h"

#include <QDateTime>
#include <QRegularExpression>

#include <sqlite3.h>

#include <cmath>
#include <map>

namespace tabulor::JetQuery {

namespace {

// MSysQueries.Attribute: what a row of a query's definition holds.
enum Attribute
{
    TypeRow = 1,
    ParameterRow = 2,
    FlagRow = 3,
    RemoteDatabaseRow = 4,
    SourceRow = 5,
    ColumnRow = 6,
    JoinRow = 7,
    WhereRow = 8,
    GroupByRow = 9,
    HavingRow = 10,
    OrderByRow = 11,
};

// The query kinds in the object's flags (bits 0xf0) and in the definition's type row.
enum class QueryKind
{
    Select,
    Crosstab,
    Union,
    Action
};

constexpr quint32 CrosstabFlag = 0x10;
constexpr quint32 UnionFlag = 0x80;
constexpr int CrosstabType = 6;
constexpr int UnionType = 9;
constexpr int SelectType = 1;

// Flag-row bits.
constexpr int SelectStar = 0x01;
constexpr int Distinct = 0x02;
constexpr int DistinctRow = 0x08;
constexpr int Top = 0x10;
constexpr int TopPercent = 0x20;
constexpr int UnionAll = 0x02;

// Queries reading queries reading queries: a definition that comes back to itself ends here.
constexpr int MaxNesting = 16;
thread_local int nesting = 0;

struct DefinitionRow
{
    int attribute = 0;
    QByteArray order;
    QString name1;
    QString name2;
    QString expression;
    int flag = 0;
};

// How field types are declared in the engine, so that a column read straight from a loaded
// table gives its type back. Each name keeps the engine's affinity right for its values.
struct DeclaredType
{
    qint16 type;
    const char* declaration;
};
constexpr DeclaredType Declarations[] = {
    {FieldBoolean, "BOOLEAN"},  {FieldByte, "BYTE"},
    {FieldInteger, "SMALLINT"}, {FieldLong, "LONG"},
    {FieldBigInt, "BIGINT"},    {FieldCurrency, "CURRENCY"},
    {FieldSingle, "SINGLE"},    {FieldDouble, "DOUBLE"},
    {FieldDecimal, "DECIMAL"},  {FieldNumeric, "NUMERIC"},
    {FieldFloat, "FLOAT"},      {FieldDate, "DATETIME"},
    {FieldMemo, "LONGTEXT"},    {FieldGuid, "GUIDCHAR"},
    {FieldBinary, "BINARY"},    {FieldLongBinary, "LONGBINARY"},
    {FieldText, "VARCHAR"},
};

QString declarationFor(qint16 type)
{
    for (const DeclaredType& d : Declarations) {
        if (d.type == type)
            return QString::fromLatin1(d.declaration);
    }
    return QStringLiteral("VARCHAR");
}

std::optional<qint16> typeForDeclaration(const char* declaration)
{
    for (const DeclaredType& d : Declarations) {
        if (declaration && qstrcmp(declaration, d.declaration) == 0)
            return d.type;
    }
    return std::nullopt;
}

void bindValue(sqlite3_stmt* statement, int index, const QVariant& value)
{
    if (value.isNull())
        sqlite3_bind_null(statement, index);
    else if (value.metaType() == QMetaType::fromType<bool>())
        sqlite3_bind_int(statement, index, value.toBool() ? -1 : 0);
    else if (value.metaType() == QMetaType::fromType<Currency>())
        sqlite3_bind_double(statement, index, value.value<Currency>().toDouble());
    else if (value.metaType() == QMetaType::fromType<QDate>())
        sqlite3_bind_text(statement, index, value.toDate().toString(Qt::ISODate).toUtf8(), -1,
                          SQLITE_TRANSIENT);
    else if (value.metaType() == QMetaType::fromType<QDateTime>())
        sqlite3_bind_text(
            statement, index,
            value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toUtf8(), -1,
            SQLITE_TRANSIENT);
    else if (value.metaType() == QMetaType::fromType<QByteArray>()) {
        const QByteArray bytes = value.toByteArray();
        sqlite3_bind_blob(statement, index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
    } else if (value.metaType() == QMetaType::fromType<double>())
        sqlite3_bind_double(statement, index, value.toDouble());
    else if (value.canConvert<qint64>() && value.metaType() != QMetaType::fromType<QString>())
        sqlite3_bind_int64(statement, index, value.toLongLong());
    else
        sqlite3_bind_text(statement, index, value.toString().toUtf8(), -1, SQLITE_TRANSIENT);
}

struct EngineCloser
{
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
using Engine = std::unique_ptr<sqlite3, EngineCloser>;

// The in-memory database a query runs in, with the tables and queries it reads copied in.
class Workspace
{
public:
    Workspace(DataSource& database, const JetCatalog& catalog)
        : m_database(database), m_catalog(catalog)
    {
    }

    bool start(QString* error)
    {
        sqlite3* db = nullptr;
        const int opened = sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE, nullptr);
        m_engine.reset(db);
        // Double quotes name columns only: a misspelt name must fail, not become a text.
        if (opened != SQLITE_OK || sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr) ||
            sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr) ||
            !registerJetFunctions(db)) {
            *error = QStringLiteral("the query engine cannot be started");
            return false;
        }
        return true;
    }

    Engine release() { return std::move(m_engine); }
    sqlite3* engine() const { return m_engine.get(); }

    // Copies a table, linked table or query into the engine once; names are matched as Jet
    // SQL matches them, without regard to case.
    const JetSourceSchema* load(const QString& name, QString* error)
    {
        const QString key = name.toLower();
        if (const auto found = m_loaded.find(key); found != m_loaded.end())
            return found->second.get();
        const JetObject* object = nullptr;
        for (const JetObject& candidate : m_catalog.objects()) {
            if (candidate.name.compare(name, Qt::CaseInsensitive) == 0) {
                object = &candidate;
                break;
            }
        }
        if (!object) {
            *error = QStringLiteral("it reads '%1', which is no table or query here").arg(name);
            return nullptr;
        }
        QString problem;
        const std::unique_ptr<Recordset> rows =
            m_database.openRecordSource(object->name, std::nullopt, &problem);
        if (!rows) {
            *error = problem;
            return nullptr;
        }
        auto schema = std::make_unique<JetSourceSchema>();
        schema->table = object->name;
        QStringList columns;
        QStringList slots;
        for (int i = 0; i < rows->fieldCount(); ++i) {
            schema->columns.append(rows->fieldName(i));
            schema->types.append(rows->fieldType(i));
            QString column = JetSqlTranslator::quoted(rows->fieldName(i)) + u' ' +
                             declarationFor(rows->fieldType(i));
            // Jet compares and sorts text without regard to case.
            if (rows->fieldType(i) == FieldText || rows->fieldType(i) == FieldMemo)
                column += QStringLiteral(" COLLATE NOCASE");
            columns.append(column);
            slots.append(QStringLiteral("?"));
        }
        const QString table = JetSqlTranslator::quoted(object->name);
        if (!execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(table, columns.join(u',')), error))
            return nullptr;
        SqliteStatement insert = prepare(
            QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(table, slots.join(u',')), error);
        if (!insert || !execute(QStringLiteral("BEGIN"), error))
            return nullptr;
        for (; !rows->atEnd(); rows->moveNext()) {
            for (int i = 0; i < rows->fieldCount(); ++i)
                bindValue(insert.get(), i + 1, rows->value(i));
            if (sqlite3_step(insert.get()) != SQLITE_DONE) {
                *error = QString::fromUtf8(sqlite3_errmsg(engine()));
                return nullptr;
            }
            sqlite3_reset(insert.get());
        }
        if (!execute(QStringLiteral("COMMIT"), error))
            return nullptr;
        return m_loaded.emplace(key, std::move(schema)).first->second.get();
    }

    SqliteStatement prepare(const QString& sql, QString* error) const
    {
        const QByteArray utf8 = sql.toUtf8();
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(engine(), utf8.constData(), int(utf8.size()), &statement, nullptr) !=
            SQLITE_OK) {
            *error = QString::fromUtf8(sqlite3_errmsg(engine()));
            sqlite3_finalize(statement);
            return nullptr;
        }
        return SqliteStatement(statement);
    }

private:
    bool execute(const QString& sql, QString* error) const
    {
        const SqliteStatement statement = prepare(sql, error);
        if (statement && sqlite3_step(statement.get()) == SQLITE_DONE)
            return true;
        if (statement)
            *error = QString::fromUtf8(sqlite3_errmsg(engine()));
        return false;
    }

    DataSource& m_database;
    const JetCatalog& m_catalog;
    Engine m_engine;
    std::map<QString, std::unique_ptr<JetSourceSchema>> m_loaded;
};

// The rows of a query's definition, each attribute's rows in their stored order.
std::optional<QList<DefinitionRow>> readDefinition(const JetHandle& file, qint32 id, QString* error)
{
    const int index = file.findTable(QStringLiteral("MSysQueries"));
    if (index < 0) {
        *error = QStringLiteral("the database keeps no query definitions");
        return std::nullopt;
    }
    const std::unique_ptr<JetRecordset> rows = JetRecordset::open(file, index, std::nullopt, error);
    if (!rows)
        return std::nullopt;
    QHash<QString, int> field;
    for (int i = 0; i < rows->fieldCount(); ++i)
        field.insert(rows->fieldName(i), i);
    const auto value = [&](const char* name) { return rows->value(field.value(name, -1)); };
    QList<DefinitionRow> definition;
    for (; !rows->atEnd(); rows->moveNext()) {
        if (value("ObjectId").toInt() != id)
            continue;
        definition.append({value("Attribute").toInt(), value("Order").toByteArray(),
                           value("Name1").toString(), value("Name2").toString(),
                           value("Expression").toString(), value("Flag").toInt()});
    }
    std::stable_sort(
        definition.begin(), definition.end(), [](const DefinitionRow& a, const DefinitionRow& b) {
            return a.attribute != b.attribute ? a.attribute < b.attribute : a.order < b.order;
        });
    return definition;
}

QList<DefinitionRow> rowsOf(const QList<DefinitionRow>& definition, int attribute)
{
    QList<DefinitionRow> rows;
    for (const DefinitionRow& row : definition) {
        if (row.attribute == attribute)
            rows.append(row);
    }
    return rows;
}

QueryKind kindOf(const JetObject& query, const QList<DefinitionRow>& definition)
{
    const QList<DefinitionRow> type = rowsOf(definition, TypeRow);
    if (!type.isEmpty()) {
        if (type[0].flag == SelectType)
            return QueryKind::Select;
        if (type[0].flag == CrosstabType)
            return QueryKind::Crosstab;
        return type[0].flag == UnionType ? QueryKind::Union : QueryKind::Action;
    }
    switch (query.flags & 0xf0) {
    case 0:
        return QueryKind::Select;
    case CrosstabFlag:
        return QueryKind::Crosstab;
    case UnionFlag:
        return QueryKind::Union;
    default:
        return QueryKind::Action;
    }
}

// The FROM clause: each source alone, until a join row puts two of them together.
struct JoinNode
{
    QStringList keys; // the names and aliases of the tables inside
    QString sql;
};

std::optional<QString> fromClause(JetSqlTranslator& translator,
                                  const QList<DefinitionRow>& definition, QString* error)
{
    QList<JoinNode> nodes;
    for (const DefinitionRow& row : rowsOf(definition, SourceRow)) {
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
    for (const DefinitionRow& join : rowsOf(definition, JoinRow)) {
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

// The names of a query's columns: their aliases, else names made from their expressions.
// Fields shown under the same name are told apart by their tables, as Jet does.
QStringList columnNames(const QList<DefinitionRow>& columnRows)
{
    QStringList names;
    int unnamed = 0;
    for (const DefinitionRow& row : columnRows)
        names.append(row.name1.isEmpty() ? defaultColumnName(row.expression, &unnamed) : row.name1);
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (names.count(names[i]) > 1 && columnRows[i].name1.isEmpty())
            names[i] = QString(columnRows[i].expression).remove(u'[').remove(u']');
    }
    return names;
}

// A clause made of the expressions of some definition rows: WHERE and HAVING conditions,
// GROUP BY and ORDER BY keys (with DESC where a key says D). Empty without rows; nullopt with
// *error set when an expression cannot be translated.
std::optional<QString> clause(JetSqlTranslator& translator, const QList<DefinitionRow>& rows,
                              const char* keyword, const QString& separator, QString* error)
{
    QStringList parts;
    for (const DefinitionRow& row : rows) {
        const std::optional<JetSqlExpression> part = translator.expression(row.expression, error);
        if (!part)
            return std::nullopt;
        const bool descending = row.attribute == OrderByRow &&
                                row.name1.compare(QLatin1String("D"), Qt::CaseInsensitive) == 0;
        parts.append(part->sql + (descending ? QStringLiteral(" DESC") : QString()));
    }
    if (parts.isEmpty())
        return QString();
    return u' ' + QLatin1String(keyword) + u' ' + parts.join(separator);
}

// A select query rebuilt from its definition rows.
std::optional<QString> selectStatement(JetSqlTranslator& translator,
                                       const QList<DefinitionRow>& definition,
                                       QHash<QString, qint16>* columnTypes, QString* error)
{
    const QList<DefinitionRow> flagRows = rowsOf(definition, FlagRow);
    const int flags = flagRows.isEmpty() ? 0 : flagRows[0].flag;
    if (flags & TopPercent) {
        *error = QStringLiteral("TOP ... PERCENT is not supported");
        return std::nullopt;
    }
    // The sources first, so that every expression knows their columns.
    const std::optional<QString> from = fromClause(translator, definition, error);
    if (!from)
        return std::nullopt;
    const QList<DefinitionRow> columnRows = rowsOf(definition, ColumnRow);
    const QStringList names = columnNames(columnRows);
    QStringList columns;
    for (qsizetype i = 0; i < columnRows.size(); ++i) {
        const DefinitionRow& row = columnRows[i];
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
    if (flags & SelectStar)
        columns.append(QStringLiteral("*"));
    if (columns.isEmpty()) {
        *error = QStringLiteral("it selects no columns");
        return std::nullopt;
    }
    // DISTINCTROW keeps one row per record of the tables whose fields are shown; over those
    // fields (their keys among them, as a rule) that is DISTINCT. With * it changes nothing.
    const bool distinct = (flags & Distinct) || ((flags & DistinctRow) && !(flags & SelectStar));
    QString sql = QStringLiteral("SELECT ") + (distinct ? "DISTINCT " : "") +
                  columns.join(QStringLiteral(", "));
    if (!from->isEmpty())
        sql += QStringLiteral(" FROM ") + *from;
    for (const auto& [attribute, keyword, separator] :
         {std::tuple(WhereRow, "WHERE", QStringLiteral(" AND ")),
          std::tuple(GroupByRow, "GROUP BY", QStringLiteral(", ")),
          std::tuple(HavingRow, "HAVING", QStringLiteral(" AND ")),
          std::tuple(OrderByRow, "ORDER BY", QStringLiteral(", "))}) {
        const std::optional<QString> part =
            clause(translator, rowsOf(definition, attribute), keyword, separator, error);
        if (!part)
            return std::nullopt;
        sql += *part;
    }
    if (flags & Top)
        sql += QStringLiteral(" LIMIT ") + QString::number(flagRows[0].name1.toLongLong());
    return sql;
}

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

// The rows a statement gives in the engine, each as its first value.
std::optional<QList<QVariant>> firstValues(const Workspace& workspace, const QString& sql,
                                           QString* error)
{
    const SqliteStatement statement = workspace.prepare(sql, error);
    if (!statement)
        return std::nullopt;
    QList<QVariant> values;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement.get())) == SQLITE_ROW)
        values.append(columnValue(statement.get(), 0, FieldText));
    if (result != SQLITE_DONE) {
        *error = QString::fromUtf8(sqlite3_errmsg(workspace.engine()));
        return std::nullopt;
    }
    return values;
}

// Jet's limit on the columns of a query.
constexpr int MaxColumns = 255;

// A crosstab query: the row headings grouped, then a column for each value of the column
// heading (those of its IN list in their order, else every value the rows give, in order),
// each holding the value aggregated over the rows of its row and heading. A column is named
// by its heading's value as text; rows without a heading fall in the column "<>".
std::optional<QString> crosstabStatement(JetSqlTranslator& translator, const Workspace& workspace,
                                         const QList<DefinitionRow>& definition,
                                         QHash<QString, qint16>* columnTypes, QString* error)
{
    // Column rows and their grouping rows are marked: 2 a row heading, 1 the column heading,
    // 0 the value.
    enum Role
    {
        Heading = 1,
        RowHeading = 2
    };
    const std::optional<QString> from = fromClause(translator, definition, error);
    if (!from)
        return std::nullopt;
    QList<DefinitionRow> rowHeadings;
    QList<DefinitionRow> headings;
    QList<DefinitionRow> values;
    for (const DefinitionRow& row : rowsOf(definition, ColumnRow)) {
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
    QList<DefinitionRow> groups;
    for (const DefinitionRow& row : rowsOf(definition, GroupByRow)) {
        if (row.flag != Heading)
            groups.append(row);
    }
    // Without an order of its own, a crosstab's rows come in the order of their headings.
    const QList<DefinitionRow> orderRows = rowsOf(definition, OrderByRow);
    const struct
    {
        QList<DefinitionRow> rows;
        const char* keyword;
        QString separator;
    } clauses[] = {{rowsOf(definition, WhereRow), "WHERE", QStringLiteral(" AND ")},
                   {groups, "GROUP BY", QStringLiteral(", ")},
                   {rowsOf(definition, HavingRow), "HAVING", QStringLiteral(" AND ")},
                   {orderRows.isEmpty() ? groups : orderRows, "ORDER BY", QStringLiteral(", ")}};
    QStringList tail;
    for (const auto& c : clauses) {
        const std::optional<QString> part =
            clause(translator, c.rows, c.keyword, c.separator, error);
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
    const std::optional<QList<QVariant>> headingValues = firstValues(workspace, valuesSql, error);
    if (!headingValues)
        return std::nullopt;
    if (rowHeadings.size() + headingValues->size() > MaxColumns) {
        *error = QStringLiteral("it would have more than %1 columns").arg(MaxColumns);
        return std::nullopt;
    }

    QStringList columns;
    const QStringList names = columnNames(rowHeadings);
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
        } else if (value.typeId() == QMetaType::QString ||
                   value.typeId() == QMetaType::QByteArray) {
            name = value.toString();
            condition = QStringLiteral("(%1) = '%2'")
                            .arg(headingSql->sql, QString(name).replace(u'\'', "''"));
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

// A union query: its parts are kept as SQL text, joined by UNION or UNION ALL.
std::optional<QString> unionStatement(JetSqlTranslator& translator,
                                      const QList<DefinitionRow>& definition, QString* error)
{
    QStringList parts;
    for (const DefinitionRow& row : rowsOf(definition, SourceRow))
        parts.append(row.expression.trimmed().remove(QRegularExpression(QStringLiteral(";\\s*$"))));
    if (parts.size() < 2) {
        *error = QStringLiteral("its parts are missing");
        return std::nullopt;
    }
    const QList<DefinitionRow> flagRows = rowsOf(definition, FlagRow);
    const bool all = !flagRows.isEmpty() && (flagRows[0].flag & UnionAll);
    QString jet = parts.join(all ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION "));
    // The order of the whole union is kept apart from its parts.
    QStringList keys;
    for (const DefinitionRow& row : rowsOf(definition, OrderByRow))
        keys.append(row.expression +
                    (row.name1.compare(QLatin1String("D"), Qt::CaseInsensitive) == 0
                         ? QStringLiteral(" DESC")
                         : QString()));
    if (!keys.isEmpty())
        jet += QStringLiteral(" ORDER BY ") + keys.join(QStringLiteral(", "));
    return translator.statement(jet, error);
}

// The rows of a query as the engine gives them, typed like the fields they come from.
class QueryRecordset final : public Recordset
{
public:
    QueryRecordset(Engine engine, SqliteStatement statement, std::optional<qint64> rowLimit)
        : m_engine(std::move(engine)), m_statement(std::move(statement)), m_rowLimit(rowLimit)
    {
    }

    // Names and types once the first row has been read: a column computed by the engine
    // without a known type is typed by that row's value.
    void describe(const QHash<QString, qint16>& columnTypes)
    {
        sqlite3_stmt* rows = m_statement.get();
        for (int i = 0; i < sqlite3_column_count(rows); ++i) {
            const QString name = QString::fromUtf8(sqlite3_column_name(rows, i));
            m_names.append(name);
            std::optional<qint16> type = typeForDeclaration(sqlite3_column_decltype(rows, i));
            if (!type && columnTypes.value(name, 0) != 0)
                type = columnTypes.value(name);
            m_types.append(type.value_or(
                fieldTypeForStorageClass(m_atEnd ? SQLITE_NULL : sqlite3_column_type(rows, i))));
        }
    }

    int fieldCount() const override { return int(m_names.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    bool moveFirst() override
    {
        sqlite3_reset(m_statement.get());
        m_rowsRead = 0;
        return step() == SQLITE_ROW;
    }
    bool moveNext() override { return !m_atEnd && step() == SQLITE_ROW; }
    bool atEnd() const override { return m_atEnd; }

    QVariant value(int field) const override
    {
        if (m_atEnd || field < 0 || field >= m_types.size())
            return {};
        sqlite3_stmt* rows = m_statement.get();
        if (m_types[field] == FieldCurrency && sqlite3_column_type(rows, field) != SQLITE_NULL)
            return QVariant::fromValue(
                Currency{std::llround(sqlite3_column_double(rows, field) * Currency::kScale)});
        return columnValue(rows, field, m_types[field]);
    }

    qint64 recordCount() const override { return m_rowsRead; }

    // Reads the next row, unless the row limit is reached; the engine's result code.
    int step()
    {
        if (m_rowLimit && m_rowsRead >= *m_rowLimit) {
            m_atEnd = true;
            return SQLITE_DONE;
        }
        const int result = sqlite3_step(m_statement.get());
        m_atEnd = result != SQLITE_ROW;
        if (!m_atEnd)
            ++m_rowsRead;
        return result;
    }

    QString lastError() const { return QString::fromUtf8(sqlite3_errmsg(m_engine.get())); }

private:
    Engine m_engine;
    SqliteStatement m_statement;
    std::optional<qint64> m_rowLimit;
    QStringList m_names;
    QList<qint16> m_types;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
};

std::unique_ptr<Recordset> run(DataSource& database, const JetHandle& file,
                               const JetCatalog& catalog, const JetObject& query,
                               std::optional<qint64> rowLimit, QString* problem)
{
    const std::optional<QList<DefinitionRow>> definition = readDefinition(file, query.id, problem);
    if (!definition)
        return nullptr;
    const QueryKind kind = kindOf(query, *definition);
    if (kind == QueryKind::Action) {
        *problem = QStringLiteral("it is an action, data-definition or pass-through query, "
                                  "which changes data or runs elsewhere");
        return nullptr;
    }
    const QList<DefinitionRow> parameters = rowsOf(*definition, ParameterRow);
    if (!parameters.isEmpty()) {
        QStringList names;
        for (const DefinitionRow& row : parameters)
            names.append(row.name1);
        *problem =
            QStringLiteral("it asks for parameters (%1)").arg(names.join(QStringLiteral(", ")));
        return nullptr;
    }
    if (!rowsOf(*definition, RemoteDatabaseRow).isEmpty()) {
        *problem = QStringLiteral("it reads another database");
        return nullptr;
    }

    Workspace workspace(database, catalog);
    if (!workspace.start(problem))
        return nullptr;
    JetSqlTranslator translator(
        [&workspace](const QString& name, QString* error) { return workspace.load(name, error); });
    QHash<QString, qint16> columnTypes;
    std::optional<QString> sql;
    if (kind == QueryKind::Union)
        sql = unionStatement(translator, *definition, problem);
    else if (kind == QueryKind::Crosstab)
        sql = crosstabStatement(translator, workspace, *definition, &columnTypes, problem);
    else
        sql = selectStatement(translator, *definition, &columnTypes, problem);
    if (!sql)
        return nullptr;
    SqliteStatement statement = workspace.prepare(*sql, problem);
    if (!statement)
        return nullptr;
    // A negative limit means no rows, as for tables.
    if (rowLimit)
        rowLimit = std::max<qint64>(*rowLimit, 0);
    auto records =
        std::make_unique<QueryRecordset>(workspace.release(), std::move(statement), rowLimit);
    const int first = records->step();
    if (first != SQLITE_ROW && first != SQLITE_DONE) {
        *problem = records->lastError();
        return nullptr;
    }
    records->describe(columnTypes);
    return records;
}

} // namespace

std::unique_ptr<Recordset> open(DataSource& database, const JetHandle& file,
                                const JetCatalog& catalog, const JetObject& query,
                                std::optional<qint64> rowLimit, QString* error)
{
    QString problem;
    std::unique_ptr<Recordset> records;
    if (nesting >= MaxNesting) {
        problem = QStringLiteral("its queries read each other in a circle");
    } else {
        ++nesting;
        records = run(database, file, catalog, query, rowLimit, &problem);
        --nesting;
    }
    if (!records && error)
        *error = QStringLiteral("The query '%1' cannot be run: %2.").arg(query.name, problem);
    return records;
}

} // namespace tabulor::JetQuery
