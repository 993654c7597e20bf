#include "production/data/postgres/PostgresSortOrder.h"

#include "production/base/FieldType.h"
#include "production/data/postgres/PostgresConnection.h"
#include "production/data/postgres/PostgresRecordset.h"
#include "production/data/postgres/PostgresValues.h"
#include "production/grid/RecordOrder.h"

#include <libpq-fe.h>

#include <algorithm>
#include <numeric>

namespace tabulor {

namespace {

// The most distinct values of one column that are ranked; a column with more is not sorted by
// the server, so that memory stays bounded however large the table.
constexpr int kMaxRankedValues = 100000;

// Whether the grid compares a column's values as numbers in the server's own order. Reals and
// decimals are read as doubles, so the server compares them as doubles too.
std::optional<QByteArray> numericOrder(qint16 fieldType, const QByteArray& column)
{
    switch (fieldType) {
    case FieldBoolean:
    case FieldInteger:
    case FieldLong:
    case FieldBigInt:
    case FieldCurrency:
        return column;
    case FieldSingle:
    case FieldDouble:
    case FieldDecimal:
        return column + "::pg_catalog.float8";
    default:
        return std::nullopt;
    }
}

// An array literal of texts, each in double quotes.
QByteArray textArray(const QByteArrayList& texts)
{
    QByteArray array = "{";
    for (const QByteArray& text : texts) {
        if (array.size() > 1)
            array += ',';
        array += '"';
        for (const char c : text) {
            if (c == '"' || c == '\\')
                array += '\\';
            array += c;
        }
        array += '"';
    }
    return array + '}';
}

// Ranks for the distinct texts of a column, from 0: values the grid holds equal share a rank,
// and values the grid keeps in table order (binary ones) all share the last rank, so that the
// tie keeps them in that order.
QByteArray rankArray(const QByteArrayList& texts, qint16 fieldType, const QCollator& collator)
{
    OutlineGrid values;
    GridColumn column;
    column.type = fieldType;
    values.setColumns({column});
    for (const QByteArray& text : texts)
        values.appendRecord({postgresValue(text, fieldType)});
    const CellOrder order(values, {SortKey{0, false}}, collator);
    std::vector<qint32> sorted(static_cast<size_t>(texts.size()));
    std::iota(sorted.begin(), sorted.end(), 0);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](qint32 a, qint32 b) { return order.before(a, b); });
    std::vector<int> ranks(sorted.size());
    int rank = -1;
    qint32 previous = -1;
    for (const qint32 record : sorted) {
        const CellValue& cell = values.cell(record, 0);
        const bool same = previous >= 0 && (cell.kind == CellValue::Other
                                                ? values.cell(previous, 0).kind == CellValue::Other
                                                : order.compare(0, previous, record) == 0);
        if (!same)
            ++rank;
        ranks[static_cast<size_t>(record)] = rank;
        previous = record;
    }
    QByteArray array = "{";
    for (size_t i = 0; i < ranks.size(); ++i)
        array += (i > 0 ? "," : "") + QByteArray::number(ranks[i]);
    return array + '}';
}

} // namespace

std::optional<PostgresSortedQuery> postgresSortedQuery(const PostgresConnection& connection,
                                                       const PostgresRelation& relation,
                                                       const QList<SortField>& order,
                                                       const QCollator& collator, QString* error)
{
    if (!relation.physicalOrder)
        return std::nullopt;
    const QByteArray table = connection.quotedIdentifier(relation.schema) + '.' +
                             connection.quotedIdentifier(relation.name);
    PostgresSortedQuery query;
    QByteArrayList terms;
    for (const SortField& field : order) {
        const auto found =
            std::find_if(relation.columns.cbegin(), relation.columns.cend(),
                         [&](const PostgresColumn& c) { return c.name == field.name; });
        if (found == relation.columns.cend())
            return std::nullopt;
        const qint16 fieldType = fieldTypeForPostgresType(found->typeOid);
        const QByteArray column = "t." + connection.quotedIdentifier(found->name);
        const char* direction = field.descending ? " DESC NULLS LAST" : " ASC NULLS FIRST";
        if (const std::optional<QByteArray> byValue = numericOrder(fieldType, column)) {
            terms.append(*byValue + direction);
            continue;
        }
        const PostgresResult distinct = connection.run(
            "SELECT DISTINCT " + column + "::pg_catalog.text FROM " + table + " AS t WHERE " +
                column + " IS NOT NULL LIMIT " + QByteArray::number(kMaxRankedValues + 1),
            {}, error);
        if (!distinct || PQntuples(distinct.get()) > kMaxRankedValues)
            return std::nullopt;
        QByteArrayList texts;
        for (int row = 0; row < PQntuples(distinct.get()); ++row)
            texts.append(QByteArray(PQgetvalue(distinct.get(), row, 0),
                                    PQgetlength(distinct.get(), row, 0)));
        const QByteArray ranked = 'r' + QByteArray::number(terms.size());
        const QByteArray values = '$' + QByteArray::number(query.parameters.size() + 1);
        const QByteArray ranks = '$' + QByteArray::number(query.parameters.size() + 2);
        query.parameters.append(textArray(texts));
        query.parameters.append(rankArray(texts, fieldType, collator));
        // Matched byte for byte, whatever collation the column has.
        query.joins += " LEFT JOIN ROWS FROM (pg_catalog.unnest(" + values +
                       "::pg_catalog.text[]), pg_catalog.unnest(" + ranks +
                       "::pg_catalog.int4[])) AS " + ranked + "(v, k) ON " + ranked + ".v = (" +
                       column + "::pg_catalog.text COLLATE \"C\")";
        terms.append(ranked + ".k" + direction);
    }
    terms.append("t.ctid");
    query.orderBy = terms.join(", ");
    return query;
}

} // namespace tabulor
