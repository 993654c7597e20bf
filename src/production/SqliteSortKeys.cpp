#include "production/SqliteSortKeys.h"

#include "production/FieldType.h"
#include "production/RecordOrder.h"
#include "production/SqliteValues.h"

#include <QDateTime>

#include <sqlite3.h>

#include <atomic>

namespace tabulor {

namespace {

// The kinds that sort after the numbers, in the grid's order.
enum KeyKind : char
{
    KeyDateTime = 2,
    KeyTime = 3,
    KeyText = 4,
    KeyOther = 5,
};

// A kind and a signed number as nine bytes that compare as the pair does.
void resultKey(sqlite3_context* context, KeyKind kind, qint64 number)
{
    unsigned char bytes[9];
    bytes[0] = static_cast<unsigned char>(kind);
    const quint64 biased = static_cast<quint64>(number) ^ (quint64(1) << 63);
    for (int i = 0; i < 8; ++i)
        bytes[1 + i] = static_cast<unsigned char>(biased >> (56 - 8 * i));
    sqlite3_result_blob(context, bytes, sizeof bytes, SQLITE_TRANSIENT);
}

constexpr qint64 kEpochJulianDay = 2440588;
constexpr qint64 kDay = 86400000;

} // namespace

SqliteSortKeys::SqliteSortKeys(std::shared_ptr<SqliteConnection> connection,
                               QByteArray functionName)
    : m_connection(std::move(connection)), m_functionName(std::move(functionName))
{
}

SqliteSortKeys::~SqliteSortKeys()
{
    m_connection->removeFunction(m_functionName, 3);
}

std::shared_ptr<SqliteSortKeys> SqliteSortKeys::define(std::shared_ptr<SqliteConnection> connection,
                                                       const QString& table,
                                                       const std::vector<Column>& columns,
                                                       const QCollator& collator, QString* error)
{
    static std::atomic<int> defined{0};
    const QByteArray name = "tabulor_sort_key_" + QByteArray::number(++defined);
    std::shared_ptr<SqliteSortKeys> keys(new SqliteSortKeys(connection, name));
    if (columns.empty())
        return keys;

    // One pass over the table collects each column's distinct texts.
    QStringList selected;
    for (const Column& column : columns) {
        selected.append(SqliteConnection::quotedIdentifier(column.name));
        keys->m_columnNames.push_back(column.name);
        keys->m_columns.push_back(KeyColumn{column.fieldType, {}});
    }
    const SqliteStatement scan = connection->prepare(
        QStringLiteral("SELECT ") + selected.join(u',') + QStringLiteral(" FROM ") +
            SqliteConnection::quotedIdentifier(table),
        error);
    if (!scan)
        return nullptr;
    const int count = static_cast<int>(columns.size());
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(scan.get())) == SQLITE_ROW) {
        for (int c = 0; c < count; ++c) {
            if (sqlite3_column_type(scan.get(), c) != SQLITE_TEXT)
                continue;
            const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(scan.get(), c));
            const QByteArray bytes =
                QByteArray::fromRawData(data, sqlite3_column_bytes(scan.get(), c));
            auto& seen = keys->m_columns[static_cast<size_t>(c)].textRanks;
            if (!seen.contains(bytes))
                seen.insert(QByteArray(bytes.constData(), bytes.size()), 0);
        }
    }
    if (result != SQLITE_DONE) {
        setError(error, connection->lastError());
        return nullptr;
    }

    // Rank the texts as the grid would: those a date field reads as dates are no texts.
    for (KeyColumn& column : keys->m_columns) {
        std::vector<QByteArray> stored;
        QStringList texts;
        for (auto it = column.textRanks.cbegin(); it != column.textRanks.cend(); ++it) {
            const QString text = QString::fromUtf8(it.key());
            if (column.fieldType == FieldDate && parseIsoDateTime(text).isValid())
                continue;
            stored.push_back(it.key());
            texts.append(text);
        }
        const std::vector<quint32> ranks = collationRanks(texts, collator);
        column.textRanks.clear();
        for (size_t i = 0; i < stored.size(); ++i)
            column.textRanks.insert(stored[i], ranks[i]);
    }

    if (!connection->defineFunction(name, 3, &SqliteSortKeys::key, keys.get())) {
        setError(error, connection->lastError());
        return nullptr;
    }
    return keys;
}

QString SqliteSortKeys::keyOf(int column, const QString& rowid) const
{
    return QString::fromLatin1(m_functionName) + u'(' + QString::number(column) + u',' +
           SqliteConnection::quotedIdentifier(m_columnNames.at(static_cast<size_t>(column))) +
           u',' + rowid + u')';
}

void SqliteSortKeys::key(sqlite3_context* context, int, sqlite3_value** values)
{
    const auto* keys = static_cast<const SqliteSortKeys*>(sqlite3_user_data(context));
    const KeyColumn& column = keys->m_columns[static_cast<size_t>(sqlite3_value_int(values[0]))];
    sqlite3_value* value = values[1];
    if (sqlite3_value_type(value) == SQLITE_TEXT) {
        const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const auto found =
            column.textRanks.constFind(QByteArray::fromRawData(data, sqlite3_value_bytes(value)));
        if (found != column.textRanks.cend()) {
            resultKey(context, KeyText, *found);
            return;
        }
    }
    const QVariant cell = sqliteValue(value, column.fieldType);
    switch (cell.typeId()) {
    case QMetaType::UnknownType:
        sqlite3_result_null(context);
        return;
    case QMetaType::Bool:
        sqlite3_result_int64(context, cell.toBool() ? 1 : 0);
        return;
    case QMetaType::LongLong:
        sqlite3_result_int64(context, cell.toLongLong());
        return;
    case QMetaType::Double:
        sqlite3_result_double(context, cell.toDouble());
        return;
    case QMetaType::QDate:
        resultKey(context, KeyDateTime, (cell.toDate().toJulianDay() - kEpochJulianDay) * kDay);
        return;
    case QMetaType::QDateTime:
        resultKey(context, KeyDateTime, cell.toDateTime().toMSecsSinceEpoch());
        return;
    case QMetaType::QTime:
        resultKey(context, KeyTime, cell.toTime().msecsSinceStartOfDay());
        return;
    default:
        // Other values keep the order the table holds them in.
        resultKey(context, KeyOther, sqlite3_value_int64(values[2]));
        return;
    }
}

} // namespace tabulor
