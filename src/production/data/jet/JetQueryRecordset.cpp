#include "production/data/jet/JetQueryRecordset.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/sqlite/SqliteValues.h"

#include <sqlite3.h>

#include <cmath>

namespace tabulor {

JetQueryRecordset::JetQueryRecordset(JetEngine engine, SqliteStatement statement,
                                     std::optional<qint64> rowLimit)
    : m_engine(std::move(engine)), m_statement(std::move(statement)), m_rowLimit(rowLimit)
{
}

void JetQueryRecordset::describe(const QHash<QString, qint16>& columnTypes)
{
    sqlite3_stmt* rows = m_statement.get();
    for (int i = 0; i < sqlite3_column_count(rows); ++i) {
        const QString name = QString::fromUtf8(sqlite3_column_name(rows, i));
        m_names.append(name);
        std::optional<qint16> type = fieldTypeOfDeclaration(sqlite3_column_decltype(rows, i));
        if (!type && columnTypes.value(name, 0) != 0)
            type = columnTypes.value(name);
        m_types.append(type.value_or(
            fieldTypeForStorageClass(m_atEnd ? SQLITE_NULL : sqlite3_column_type(rows, i))));
    }
}

bool JetQueryRecordset::moveFirst()
{
    sqlite3_reset(m_statement.get());
    m_rowsRead = 0;
    m_readError.clear();
    return step() == SQLITE_ROW;
}

bool JetQueryRecordset::moveNext()
{
    return !m_atEnd && step() == SQLITE_ROW;
}

QVariant JetQueryRecordset::value(int field) const
{
    if (m_atEnd || field < 0 || field >= m_types.size())
        return {};
    sqlite3_stmt* rows = m_statement.get();
    if (m_types[field] == FieldCurrency && sqlite3_column_type(rows, field) != SQLITE_NULL)
        return QVariant::fromValue(
            Currency{std::llround(sqlite3_column_double(rows, field) * Currency::kScale)});
    return columnValue(rows, field, m_types[field]);
}

int JetQueryRecordset::step()
{
    if (m_rowLimit && m_rowsRead >= *m_rowLimit) {
        m_atEnd = true;
        return SQLITE_DONE;
    }
    const int result = sqlite3_step(m_statement.get());
    m_atEnd = result != SQLITE_ROW;
    if (!m_atEnd)
        ++m_rowsRead;
    else if (result != SQLITE_DONE)
        m_readError = QStringLiteral("The query cannot be run to the end: %1.").arg(lastError());
    return result;
}

QString JetQueryRecordset::lastError() const
{
    return QString::fromUtf8(sqlite3_errmsg(m_engine.get()));
}

} // namespace tabulor
