#pragma once

#include "production/data/DataSource.h"

#include <QByteArrayList>
#include <QCollator>

#include <optional>

namespace tabulor {

class PostgresConnection;
struct PostgresRelation;

// The parts of a query that has the server sort a table's rows as the report grid sorts its
// records, the table being "t": joins, ORDER BY terms and the parameters they use.
struct PostgresSortedQuery
{
    QByteArray joins;
    QByteArray orderBy;
    QByteArrayList parameters;
};

// Columns the grid compares as numbers are sorted by value. The values of any other column
// are ranked here, by the grid's own comparison of their distinct values, and the ranks go to
// the server as two arrays joined by the value's text. Empty values come first, and rows that
// tie keep the table's physical order, which is the order a plain read gives them. Nullopt,
// with *error set when the server failed, for a relation without such an order (a view) or a
// column with too many distinct values to rank.
std::optional<PostgresSortedQuery> postgresSortedQuery(const PostgresConnection& connection,
                                                       const PostgresRelation& relation,
                                                       const QList<SortField>& order,
                                                       const QCollator& collator, QString* error);

} // namespace tabulor
