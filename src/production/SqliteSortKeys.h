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
// function gives each value a key that the engine's own ordering puts where the grid would:
// empty values first (NULL), then numbers (as numbers), then dates, times, texts and other
// values (as blobs that compare byte by byte, headed by their kind). Texts are ranked by the
// collation once, from the distinct texts of the table, so that sorting compares numbers, not
// strings.
class SqliteSortKeys
{
public:
    struct Column
    {
        QString name;
        qint16 fieldType;
    };

    // Reads the distinct texts of the columns and defines the key function on the connection;
    // null with *error set when the table cannot be read. The function is removed again when
    // the keys are destroyed.
    static std::shared_ptr<SqliteSortKeys> define(std::shared_ptr<SqliteConnection> connection,
                                                  const QString& table,
                                                  const std::vector<Column>& columns,
                                                  const QCollator& collator, QString* error);
    ~SqliteSortKeys();
    SqliteSortKeys(const SqliteSortKeys&) = delete;
    SqliteSortKeys& operator=(const SqliteSortKeys&) = delete;

    // The SQL that gives column number `column`'s key of a row, with rowid the name of the
    // table's row number.
    QString keyOf(int column, const QString& rowid) const;

private:
    struct KeyColumn
    {
        qint16 fieldType;
        QHash<QByteArray, quint32> textRanks; // by the text's bytes as stored
    };

    SqliteSortKeys(std::shared_ptr<SqliteConnection> connection, QByteArray functionName);
    static void key(sqlite3_context* context, int arguments, sqlite3_value** values);

    std::shared_ptr<SqliteConnection> m_connection;
    QByteArray m_functionName;
    std::vector<QString> m_columnNames;
    std::vector<KeyColumn> m_columns;
};

} // namespace tabulor
