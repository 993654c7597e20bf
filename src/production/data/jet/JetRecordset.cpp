#include "production/data/jet/JetRecordset.h"

#include "production/data/BinaryValue.h"
#include "production/data/jet/JetValues.h"
#include "production/data/jet/JetWarnings.h"

#include <algorithm>

namespace tabulor {

std::unique_ptr<JetRecordset> JetRecordset::open(const JetHandle& database, int catalogIndex,
                                                 std::optional<qint64> rowLimit, QString* error)
{
    std::unique_ptr<JetHandle> handle = database.clone();
    if (!handle) {
        if (error)
            *error = QStringLiteral("The database '%1' cannot be read.").arg(database.path());
        return nullptr;
    }
    JetTable table = handle->openTable(catalogIndex, error);
    if (!table)
        return nullptr;
    std::unique_ptr<JetRecordset> records(
        new JetRecordset(std::move(handle), std::move(table), rowLimit));
    records->moveFirst();
    return records;
}

JetRecordset::JetRecordset(std::unique_ptr<JetHandle> handle, JetTable table,
                           std::optional<qint64> rowLimit)
    : m_handle(std::move(handle)), m_table(std::move(table)), m_rowLimit(rowLimit)
{
    // Nothing is bound: libmdb then only notes where each value lies in the page, and never
    // formats it as text (nor warns about the types it cannot format).
    for (guint i = 0; i < m_table->num_cols; ++i) {
        auto* column = static_cast<MdbColumn*>(g_ptr_array_index(m_table->columns, i));
        m_columns.append(column);
        m_names.append(QString::fromUtf8(column->name));
        m_types.append(fieldTypeForJetColumn(column->col_type));
    }
}

bool JetRecordset::fetch()
{
    if (!m_readError.isEmpty() || (m_rowLimit && m_rowsRead >= *m_rowLimit)) {
        m_atEnd = true;
        return false;
    }
    // libmdb goes on past a page it cannot follow, after saying so.
    const JetWarnings warnings;
    m_atEnd = !mdb_fetch_row(m_table.get());
    if (warnings.any()) {
        m_readError =
            m_handle->damaged(QStringLiteral("the table '%1' cannot be read after row %2 (%3)")
                                  .arg(QString::fromUtf8(m_table->name))
                                  .arg(m_rowsRead)
                                  .arg(warnings.firstWarning()));
        m_atEnd = true;
    }
    if (!m_atEnd)
        ++m_rowsRead;
    return !m_atEnd;
}

bool JetRecordset::moveFirst()
{
    mdb_rewind_table(m_table.get());
    m_rowsRead = 0;
    m_readError.clear();
    return fetch();
}

bool JetRecordset::moveNext()
{
    return !m_atEnd && fetch();
}

QVariant JetRecordset::value(int field) const
{
    if (m_atEnd || field < 0 || field >= m_columns.size())
        return {};
    const MdbColumn* column = m_columns[field];
    // A boolean lives in the row's null bitmap, where libmdb leaves it as the value's length:
    // zero when the bit is set, which means true.
    if (column->col_type == MDB_BOOL)
        return column->cur_value_len == 0;
    if (column->cur_value_len <= 0 || !isReadableJetColumn(column->col_type))
        return {};
    const unsigned char* data = m_handle->raw()->pg_buf + column->cur_value_start;
    const int length = column->cur_value_len;
    switch (column->col_type) {
    case MDB_TEXT:
        return m_handle->decodeText(data, length);
    case MDB_BINARY:
        return binaryValue(length);
    case MDB_OLE: {
        // Only the size is shown, and the field holds it: the value's pages are not read.
        const std::optional<qint64> size = m_handle->longValueSize(column->cur_value_start, length);
        return size ? binaryValue(*size) : QVariant();
    }
    case MDB_MEMO: {
        const std::optional<QByteArray> bytes =
            m_handle->readLongValue(column->cur_value_start, length);
        if (!bytes) {
            m_readError = m_handle->damaged(
                QStringLiteral("a text of the table '%1' in row %2 cannot be read")
                    .arg(QString::fromUtf8(m_table->name))
                    .arg(m_rowsRead));
            return {};
        }
        return m_handle->decodeText(reinterpret_cast<const unsigned char*>(bytes->constData()),
                                    int(bytes->size()));
    }
    default:
        // libmdb keeps a decimal's scale in col_prec and its precision in col_scale.
        return jetFixedValue(column->col_type, data, length, column->col_prec);
    }
}

QByteArray JetRecordset::bytes(int field) const
{
    if (m_atEnd || field < 0 || field >= m_columns.size())
        return {};
    const MdbColumn* column = m_columns[field];
    if (column->cur_value_len <= 0)
        return {};
    if (column->col_type == MDB_OLE)
        return m_handle->readLongValue(column->cur_value_start, column->cur_value_len)
            .value_or(QByteArray());
    if (column->col_type != MDB_BINARY)
        return {};
    return QByteArray(
        reinterpret_cast<const char*>(m_handle->raw()->pg_buf + column->cur_value_start),
        column->cur_value_len);
}

qint64 JetRecordset::recordCount() const
{
    qint64 count = m_table->num_rows;
    if (m_rowLimit)
        count = std::min(count, *m_rowLimit);
    return std::max(count, m_rowsRead);
}

} // namespace tabulor
