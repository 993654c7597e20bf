#pragma once

#include "production/data/Recordset.h"
#include "production/data/sqlite/SqliteConnection.h"

#include <QByteArrayView>
#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

namespace tabulor {

// A forward-only cursor over one table or view, read row by row straight from the engine.
class SqliteRecordset final : public Recordset
{
public:
    // Runs SELECT * over the record source, with LIMIT when a row limit is given, and stands
    // on the first row. Null with *error set when the source cannot be read.
    static std::unique_ptr<SqliteRecordset> open(std::shared_ptr<SqliteConnection> connection,
                                                 const QString& source,
                                                 std::optional<qint64> rowLimit, QString* error);

    // Runs SELECT * over the rows of the record source that `where` picks (with ?1 bound to
    // `bound`; every row when where is empty), ordered by the SQL expression sortKey, with the
    // fields typed as given. sortKeys stays alive as long as the cursor: what the expression's
    // functions use. The key of the current row is sortKey().
    static std::unique_ptr<SqliteRecordset>
    openSorted(std::shared_ptr<SqliteConnection> connection, const QString& source,
               const QString& where, qint64 bound, const QString& sortKey,
               const QList<qint16>& types, std::shared_ptr<void> sortKeys, QString* error);
    QByteArrayView sortKey() const;

    int fieldCount() const override { return int(m_names.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_atEnd; }
    QVariant value(int field) const override;
    bool utf8Text(int field, std::string_view* text) const override;

    // The rows of the source, cut to the row limit, counted once on first request; never
    // less than the rows read so far.
    qint64 recordCount() const override;
    QString readError() const override { return m_readError; }

private:
    SqliteRecordset(std::shared_ptr<SqliteConnection> connection, SqliteStatement statement,
                    const QString& source, std::optional<qint64> rowLimit);

    // Prepares sql, binds ?1 to `bound` when given and steps to the first row.
    static std::unique_ptr<SqliteRecordset> run(std::shared_ptr<SqliteConnection> connection,
                                                const QString& sql, const QString& source,
                                                std::optional<qint64> rowLimit,
                                                std::optional<qint64> bound, QString* error);

    // Steps to the next row; returns the engine's result code. A failed step ends the cursor
    // with a read error.
    int step();

    std::shared_ptr<SqliteConnection> m_connection;
    std::shared_ptr<void> m_sortKeys; // outlives the statement
    SqliteStatement m_statement;
    QString m_source;
    std::optional<qint64> m_rowLimit;
    QStringList m_names;
    QList<qint16> m_types;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
    QString m_readError;
    mutable std::optional<qint64> m_sourceCount;
};

} // namespace tabulor
