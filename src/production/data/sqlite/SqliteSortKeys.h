#pragma once

#include "production/base/ByteTextTable.h"
#include "production/data/sqlite/SqliteConnection.h"

#include <QByteArray>
#include <QCollator>
#include <QString>

#include <functional>
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

    // The SQL that gives a row's key.
    QString keySql() const;

    // A table with rows is worked on in two halves at once, split by row number: the rows up
    // to middleRow() on the first connection, the rest on a second one of their own, where
    // the key function is defined too.
    bool split() const { return m_second != nullptr; }
    qint64 middleRow() const { return m_middle; }
    // Work on one half: its number (0 or 1), its connection and the condition that picks its
    // rows, with ?1 standing for middleRow().
    using HalfWork = std::function<bool(int half, const std::shared_ptr<SqliteConnection>&,
                                        const QString& where, QString* error)>;
    // Runs work on both halves, the second on a thread of its own; false with *error from a
    // half that failed. Only for a split table.
    bool inBothHalves(const HalfWork& work, QString* error) const;

private:
    struct KeyColumn
    {
        QString name;
        qint16 fieldType;
        bool descending;
        ByteTextTable textRanks; // by the text's bytes as stored
    };

    SqliteSortKeys(std::shared_ptr<SqliteConnection> connection, QByteArray functionName,
                   QString rowid);
    bool defineFunction(SqliteConnection& connection);
    static void key(sqlite3_context* context, int arguments, sqlite3_value** values);

    std::shared_ptr<SqliteConnection> m_connection;
    std::shared_ptr<SqliteConnection> m_second;
    qint64 m_middle = 0;
    QByteArray m_functionName;
    QString m_rowid;
    std::vector<KeyColumn> m_columns;
};

} // namespace tabulor
