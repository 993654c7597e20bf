#pragma once

#include "production/data/Recordset.h"
#include "production/data/odbc/OdbcConnection.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

#include <memory>
#include <optional>

namespace tabulor {

// A table or view as the driver's catalog names it.
struct OdbcTable
{
    QString schema;
    QString name;
};

// A forward-only cursor over one table or view through a connection of its own, so it reads
// while the data source lists or counts. Rows are fetched one at a time.
class OdbcRecordset final : public Recordset
{
public:
    // Connects, runs SELECT * over the table and stands on the first row; a row limit is
    // passed to the driver and kept by the cursor too. Null with *error set on failure.
    static std::unique_ptr<OdbcRecordset> open(const QString& connection, const OdbcTable& table,
                                               std::optional<qint64> rowLimit, QString* error);

    int fieldCount() const override { return int(m_names.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    // Runs the query again unless the cursor still stands on its first row.
    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_atEnd; }
    QVariant value(int field) const override { return m_values.value(field); }

    // The rows read so far; all of them once the cursor has reached the end.
    qint64 recordCount() const override { return m_rowsRead; }

private:
    OdbcRecordset(std::unique_ptr<OdbcConnection> connection, OdbcStatement statement, QString sql,
                  std::optional<qint64> rowLimit);

    // Runs the query, describes its columns and reads the first row.
    bool start(QString* error);
    // Reads the next row into m_values; the end or an error closes the cursor.
    bool fetch(QString* error);
    void close();

    std::unique_ptr<OdbcConnection> m_connection;
    OdbcStatement m_statement;
    QString m_sql;
    std::optional<qint64> m_rowLimit;
    QStringList m_names;
    QList<qint16> m_types;
    QList<short> m_sqlTypes;
    QVariantList m_values;
    bool m_open = false;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
};

} // namespace tabulor
