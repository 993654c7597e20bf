#pragma once

#include "production/SqliteConnection.h"

#include <QByteArray>
#include <QCollator>
#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace tabulor {

// Lets the engine sort the rows of a table the way the report grid sorts its records. An SQL
// function gives each row one key, bytes that compare as the grid compares its records: per
// sort column the value's kind (empty values first, then numbers, dates, times, texts and
// other values) and the value, every byte turned round for a column that sorts downwards, and
// last the row number, so that ties keep the table's order. Texts are ranked by the collation
// once, from the distinct texts of the table, so that sorting compares bytes, not strings.
class SqliteSortKeys
{
public:
    struct Column
    {
        QString name;
        qint16 fieldType;
        bool descending;
    };

    // Reads the distinct texts of the columns and defines the key function on the connection;
    // null with *error set when the table cannot be read. rowid names the table's row number.
    // The function is removed again when the keys are destroyed.
    static std::shared_ptr<SqliteSortKeys> define(std::shared_ptr<SqliteConnection> connection,
                                                  const QString& table, const QString& rowid,
                                                  const std::vector<Column>& columns,
                                                  const QCollator& collator, QString* error);
    ~SqliteSortKeys();
    SqliteSortKeys(const SqliteSortKeys&) = delete;
    SqliteSortKeys& operator=(const SqliteSortKeys&) = delete;

    // The SQL that gives a row's key, with rowid the name of the table's row number.
    QString keyOf(const QString& rowid) const;

    // The table in two halves, for sorting each on a thread of its own: the rows up to and
    // past middleRow(), the second half on secondConnection(), where the key function is
    // defined too. No second connection when the table was not split.
    const std::shared_ptr<SqliteConnection>& secondConnection() const { return m_second; }
    qint64 middleRow() const { return m_middle; }

private:
    struct KeyColumn
    {
        qint16 fieldType;
        bool descending;
        QHash<QByteArray, quint32> textRanks; // by the text's bytes as stored
    };

    SqliteSortKeys(std::shared_ptr<SqliteConnection> connection, QByteArray functionName);
    bool defineFunction(SqliteConnection& connection) const;
    static void key(sqlite3_context* context, int arguments, sqlite3_value** values);

    std::shared_ptr<SqliteConnection> m_connection;
    std::shared_ptr<SqliteConnection> m_second;
    qint64 m_middle = 0;
    QByteArray m_functionName;
    std::vector<QString> m_columnNames;
    std::vector<KeyColumn> m_columns;
};

} // namespace tabulor
