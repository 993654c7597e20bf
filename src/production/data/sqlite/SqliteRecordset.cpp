#include "production/data/sqlite/SqliteRecordset.h"

#include "production/base/FieldType.h"
#include "production/data/sqlite/SqliteValues.h"

#include <sqlite3.h>

#include <algorithm>

namespace tabulor {

std::unique_ptr<SqliteRecordset> SqliteRecordset::open(std::shared_ptr<SqliteConnection> connection,
                                                       const QString& source,
                                                       std::optional<qint64> rowLimit,
                                                       QString* error)
{
    // A negative limit would mean "no limit" to the engine; here it means no rows.
    if (rowLimit)
        rowLimit = std::max<qint64>(*rowLimit, 0);
    QString sql = QStringLiteral("SELECT * FROM ") + SqliteConnection::quotedIdentifier(source);
    if (rowLimit)
        sql += QStringLiteral(" LIMIT ?1");
    return run(std::move(connection), sql, source, rowLimit, rowLimit, error);
}

std::unique_ptr<SqliteRecordset>
SqliteRecordset::openSorted(std::shared_ptr<SqliteConnection> connection, const QString& source,
                            const QString& where, qint64 bound, const QString& sortKey,
                            const QList<qint16>& types, std::shared_ptr<void> sortKeys,
                            QString* error)
{
    // The key follows the fields as one more column, which orders the rows.
    QString sql = QStringLiteral("SELECT *, ") + sortKey + QStringLiteral(" FROM ") +
                  SqliteConnection::quotedIdentifier(source);
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    sql += QStringLiteral(" ORDER BY ") + QString::number(types.size() + 1);
    std::unique_ptr<SqliteRecordset> recordset =
        run(std::move(connection), sql, source, std::nullopt,
            where.isEmpty() ? std::nullopt : std::optional<qint64>(bound), error);
    if (!recordset || recordset->m_types.size() != types.size() + 1)
        return nullptr;
    recordset->m_names.removeLast();
    recordset->m_types = types;
    recordset->m_sortKeys = std::move(sortKeys);
    return recordset;
}

QByteArrayView SqliteRecordset::sortKey() const
{
    if (m_atEnd)
        return {};
    const int column = static_cast<int>(m_types.size());
    // The pointer first, then the size: asking for the size may not convert the value.
    const auto* data = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    return QByteArrayView(data, sqlite3_column_bytes(m_statement.get(), column));
}

std::unique_ptr<SqliteRecordset> SqliteRecordset::run(std::shared_ptr<SqliteConnection> connection,
                                                      const QString& sql, const QString& source,
                                                      std::optional<qint64> rowLimit,
                                                      std::optional<qint64> bound, QString* error)
{
    QString problem;
    SqliteStatement statement = connection->prepare(sql, &problem);
    if (statement && bound)
        sqlite3_bind_int64(statement.get(), 1, *bound);

    std::unique_ptr<SqliteRecordset> recordset;
    if (statement) {
        recordset.reset(new SqliteRecordset(connection, std::move(statement), source, rowLimit));
        const int first = recordset->step();
        if (first != SQLITE_ROW && first != SQLITE_DONE)
            problem = connection->lastError();
    }
    if (!problem.isEmpty()) {
        setError(
            error,
            QStringLiteral("The record source '%1' cannot be opened: %2.").arg(source, problem));
        return nullptr;
    }

    // Declared types decide; a column without one (an expression in a view) is typed by the
    // value it holds in the first row.
    sqlite3_stmt* rows = recordset->m_statement.get();
    const int columns = sqlite3_column_count(rows);
    for (int column = 0; column < columns; ++column) {
        recordset->m_names.append(QString::fromUtf8(sqlite3_column_name(rows, column)));
        const std::optional<qint16> declared =
            fieldTypeForDeclaredType(sqlite3_column_decltype(rows, column));
        const int storageClass =
            recordset->m_atEnd ? SQLITE_NULL : sqlite3_column_type(rows, column);
        recordset->m_types.append(declared.value_or(fieldTypeForStorageClass(storageClass)));
    }
    return recordset;
}

SqliteRecordset::SqliteRecordset(std::shared_ptr<SqliteConnection> connection,
                                 SqliteStatement statement, const QString& source,
                                 std::optional<qint64> rowLimit)
    : m_connection(std::move(connection)), m_statement(std::move(statement)), m_source(source),
      m_rowLimit(rowLimit)
{
}

int SqliteRecordset::step()
{
    const int result = sqlite3_step(m_statement.get());
    m_atEnd = result != SQLITE_ROW;
    if (!m_atEnd)
        ++m_rowsRead;
    else if (result != SQLITE_DONE)
        m_readError = m_connection->readFailure(result);
    return result;
}

bool SqliteRecordset::moveFirst()
{
    sqlite3_reset(m_statement.get());
    m_rowsRead = 0;
    m_readError.clear();
    return step() == SQLITE_ROW;
}

bool SqliteRecordset::moveNext()
{
    return !m_atEnd && step() == SQLITE_ROW;
}

QVariant SqliteRecordset::value(int field) const
{
    if (m_atEnd || field < 0 || field >= m_types.size())
        return {};
    return columnValue(m_statement.get(), field, m_types[field]);
}

bool SqliteRecordset::utf8Text(int field, std::string_view* text) const
{
    // A date field reads texts that look like dates as dates.
    if (m_atEnd || field < 0 || field >= m_types.size() || m_types[field] == FieldDate ||
        sqlite3_column_type(m_statement.get(), field) != SQLITE_TEXT)
        return false;
    // The pointer first, then the size.
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), field));
    *text =
        std::string_view(data, static_cast<size_t>(sqlite3_column_bytes(m_statement.get(), field)));
    return true;
}

qint64 SqliteRecordset::recordCount() const
{
    if (!m_sourceCount) {
        m_sourceCount = m_connection->countRows(m_source);
        if (m_sourceCount && m_rowLimit)
            m_sourceCount = std::min(*m_sourceCount, *m_rowLimit);
    }
    return std::max(m_sourceCount.value_or(0), m_rowsRead);
}

} // namespace tabulor
