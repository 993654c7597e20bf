#pragma once

#include "production/data/Recordset.h"
#include "production/data/postgres/PostgresConnection.h"
#include "production/data/postgres/PostgresSortOrder.h"

#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

namespace tabulor {

struct PostgresColumn
{
    QString name;
    quint32 typeOid = 0; // a domain's base type
};

// A table or view as the catalog describes it.
struct PostgresRelation
{
    QString schema;
    QString name;
    QList<PostgresColumn> columns;
    // Whether its rows lie in one heap, read in the order they lie there (a table or a
    // materialized view, not a view, a foreign or a partitioned table).
    bool physicalOrder = false;
};

// A forward-only cursor over one table or view. It has a session of its own, so it streams
// while the data source lists or counts, and it reads the rows one at a time as the server
// sends them: a report over millions of rows never holds more than the current one.
class PostgresRecordset final : public Recordset
{
public:
    // Connects, runs the query (with LIMIT when a row limit is given) and stands on the first
    // row. Null with *error set when the server refuses the query.
    static std::unique_ptr<PostgresRecordset> open(const QString& address,
                                                   const PostgresRelation& relation,
                                                   std::optional<qint64> rowLimit, QString* error);

    // Runs the query of sorted over the relation and stands on the first row.
    static std::unique_ptr<PostgresRecordset> openSorted(const QString& address,
                                                         const PostgresRelation& relation,
                                                         const PostgresSortedQuery& sorted,
                                                         QString* error);

    ~PostgresRecordset() override;

    int fieldCount() const override { return int(m_names.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    // Runs the query again unless the cursor still stands on its first row.
    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_atEnd; }
    QVariant value(int field) const override;
    bool utf8Text(int field, std::string_view* text) const override;

    // The rows read so far; all of them once the cursor has reached the end.
    qint64 recordCount() const override { return m_rowsRead; }

private:
    PostgresRecordset(std::unique_ptr<PostgresConnection> connection, QByteArray sql,
                      QByteArrayList parameters, const PostgresRelation& relation);

    // Connects and runs SELECT over the relation's columns from the relation as "t", followed
    // by tail, with the parameters.
    static std::unique_ptr<PostgresRecordset> run(const QString& address,
                                                  const PostgresRelation& relation,
                                                  const QByteArray& tail, QByteArrayList parameters,
                                                  QString* error);

    // Sends the query and reads the first row.
    bool start(QString* error);
    // Takes the next result from the server: a row, the end, or an error that ends the cursor.
    bool fetch(QString* error);
    // Stops a query whose rows are still coming and discards what is on its way.
    void abandon();

    std::unique_ptr<PostgresConnection> m_connection;
    QByteArray m_sql;
    QByteArrayList m_parameters;
    QStringList m_names;
    QList<qint16> m_types;
    PostgresResult m_row;
    bool m_running = false;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
};

} // namespace tabulor
