#include "production/data/sqlite/SqliteSortKeys.h"

#include "production/base/FieldType.h"
#include "production/base/IsoDateTime.h"
#include "production/data/sqlite/SqliteValues.h"
#include "production/grid/RecordOrder.h"

#include <QDateTime>

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <optional>
#include <thread>

namespace tabulor {

namespace {

// What each value of a sort column starts with, in the grid's order of kinds.
enum KeyKind : unsigned char
{
    KeyEmpty = 0,
    KeyNumber = 1,
    KeyDateTime = 2,
    KeyTime = 3,
    KeyText = 4,
    KeyOther = 5,
};

constexpr qint64 kEpochJulianDay = 2440588;
constexpr qint64 kDay = 86400000;

// Writes big-endian numbers and kinds into a key.
struct KeyWriter
{
    unsigned char* at;

    void put(quint64 value, int bytes)
    {
        for (int i = bytes - 1; i >= 0; --i)
            *at++ = static_cast<unsigned char>(value >> (8 * i));
    }
    void kind(KeyKind kind) { *at++ = kind; }
};

// Signed numbers as unsigned ones that compare the same.
quint64 biased(qint64 value)
{
    return static_cast<quint64>(value) ^ (quint64(1) << 63);
}

quint64 orderedBits(double value)
{
    if (value == 0)
        value = 0; // -0 and 0 are the same number
    const auto bits = std::bit_cast<quint64>(value);
    return (bits >> 63) != 0 ? ~bits : bits | (quint64(1) << 63);
}

// By value. Beyond a double's precision whole numbers go on by their exact value (doubles by
// their whole part); below it the double decides, and numbers that equal each other tie.
void putNumber(KeyWriter& key, double value, std::optional<qint64> exact = std::nullopt)
{
    constexpr double kExactLimit = 9007199254740992.0; // 2^53
    key.kind(KeyNumber);
    key.put(orderedBits(value), 8);
    if (std::abs(value) >= kExactLimit) {
        const double whole = std::clamp(value, -9.2e18, 9.2e18);
        key.put(biased(exact.value_or(static_cast<qint64>(whole))), 8);
    }
}

void putSigned(KeyWriter& key, KeyKind kind, qint64 value)
{
    key.kind(kind);
    key.put(biased(value), 8);
}

// One column's value in the key: texts by their rank, the rest as the grid would read them.
void putValue(KeyWriter& key, qint16 fieldType, const ByteTextTable& textRanks,
              sqlite3_value* value, qint64 rowid)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
        key.kind(KeyEmpty);
        return;
    case SQLITE_INTEGER:
        if (fieldType != FieldBoolean && !isFractional(fieldType)) {
            const qint64 number = sqlite3_value_int64(value);
            putNumber(key, static_cast<double>(number), number);
            return;
        }
        break;
    case SQLITE_FLOAT:
        if (fieldType != FieldBoolean) {
            putNumber(key, sqlite3_value_double(value));
            return;
        }
        break;
    case SQLITE_TEXT: {
        const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const quint32 rank =
            textRanks.find(std::string_view(data, static_cast<size_t>(sqlite3_value_bytes(value))));
        if (rank != ByteTextTable::kAbsent) {
            key.kind(KeyText);
            key.put(rank, 4);
            return;
        }
        break;
    }
    default:
        break;
    }
    const QVariant cell = sqliteValue(value, fieldType);
    switch (cell.typeId()) {
    case QMetaType::UnknownType:
        key.kind(KeyEmpty);
        return;
    case QMetaType::Bool:
        putNumber(key, cell.toBool() ? 1 : 0);
        return;
    case QMetaType::LongLong:
        putNumber(key, cell.toDouble(), cell.toLongLong());
        return;
    case QMetaType::Double:
        putNumber(key, cell.toDouble());
        return;
    case QMetaType::QDate:
        putSigned(key, KeyDateTime, (cell.toDate().toJulianDay() - kEpochJulianDay) * kDay);
        return;
    case QMetaType::QDateTime:
        putSigned(key, KeyDateTime, cell.toDateTime().toMSecsSinceEpoch());
        return;
    case QMetaType::QTime:
        putSigned(key, KeyTime, cell.toTime().msecsSinceStartOfDay());
        return;
    default:
        // Other values keep the order the table holds them in.
        putSigned(key, KeyOther, rowid);
        return;
    }
}

// The row number halfway between the table's first and last, when it has rows.
std::optional<qint64> tableMiddleRow(const SqliteConnection& connection, const QString& table,
                                     const QString& rowid)
{
    const SqliteStatement ends =
        connection.prepare(QStringLiteral("SELECT min(%1), max(%1) FROM %2")
                               .arg(rowid, SqliteConnection::quotedIdentifier(table)),
                           nullptr);
    if (!ends || sqlite3_step(ends.get()) != SQLITE_ROW ||
        sqlite3_column_type(ends.get(), 0) != SQLITE_INTEGER)
        return std::nullopt;
    const qint64 low = sqlite3_column_int64(ends.get(), 0);
    const qint64 high = sqlite3_column_int64(ends.get(), 1);
    return low + (high - low) / 2;
}

// Adds the texts of the first `count` columns of the rows the query gives to `texts`, with
// ?1 bound to `bound` when given.
bool collectTexts(const SqliteConnection& connection, const QString& query,
                  std::optional<qint64> bound, int count, std::vector<ByteTextTable>& texts,
                  QString* error)
{
    const SqliteStatement scan = connection.prepare(query, error);
    if (!scan)
        return false;
    if (bound)
        sqlite3_bind_int64(scan.get(), 1, *bound);
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(scan.get())) == SQLITE_ROW) {
        for (int c = 0; c < count; ++c) {
            if (sqlite3_column_type(scan.get(), c) != SQLITE_TEXT)
                continue;
            const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(scan.get(), c));
            texts[static_cast<size_t>(c)].insert(
                std::string_view(data, static_cast<size_t>(sqlite3_column_bytes(scan.get(), c))),
                0);
        }
    }
    if (result != SQLITE_DONE) {
        setError(error, connection.lastError());
        return false;
    }
    return true;
}

// The most bytes one column's value takes: a number.
constexpr int kMaxValueBytes = 17;

} // namespace

SqliteSortKeys::SqliteSortKeys(std::shared_ptr<SqliteConnection> connection,
                               QByteArray functionName, QString rowid)
    : m_connection(std::move(connection)), m_functionName(std::move(functionName)),
      m_rowid(std::move(rowid))
{
}

SqliteSortKeys::~SqliteSortKeys()
{
    const int arguments = static_cast<int>(m_columns.size()) + 1;
    m_connection->removeFunction(m_functionName, arguments);
    if (m_second)
        m_second->removeFunction(m_functionName, arguments);
}

bool SqliteSortKeys::defineFunction(SqliteConnection& connection)
{
    return connection.defineFunction(m_functionName, static_cast<int>(m_columns.size()) + 1,
                                     &SqliteSortKeys::key, this);
}

bool SqliteSortKeys::inBothHalves(const HalfWork& work, QString* error) const
{
    QString secondError;
    bool secondDone = false;
    std::thread second(
        [&] { secondDone = work(1, m_second, m_rowid + QStringLiteral(" > ?1"), &secondError); });
    const bool firstDone = work(0, m_connection, m_rowid + QStringLiteral(" <= ?1"), error);
    second.join();
    if (firstDone && !secondDone)
        setError(error, secondError);
    return firstDone && secondDone;
}

std::shared_ptr<SqliteSortKeys> SqliteSortKeys::define(std::shared_ptr<SqliteConnection> connection,
                                                       const QString& table, const QString& rowid,
                                                       const std::vector<Column>& columns,
                                                       const QCollator& collator, QString* error)
{
    static std::atomic<int> defined{0};
    const QByteArray name = "tabulor_sort_key_" + QByteArray::number(++defined);
    std::shared_ptr<SqliteSortKeys> keys(new SqliteSortKeys(connection, name, rowid));
    QStringList selected;
    for (const Column& column : columns) {
        selected.append(SqliteConnection::quotedIdentifier(column.name));
        keys->m_columns.push_back(KeyColumn{column.name, column.fieldType, column.descending, {}});
    }
    if (const std::optional<qint64> middle = tableMiddleRow(*connection, table, rowid)) {
        keys->m_second = connection->openAnother();
        keys->m_middle = *middle;
    }

    // Each column's distinct texts, the halves of a split table read at once.
    const int count = static_cast<int>(columns.size());
    const QString scan = QStringLiteral("SELECT ") + selected.join(u',') +
                         QStringLiteral(" FROM ") + SqliteConnection::quotedIdentifier(table);
    std::vector<ByteTextTable> texts[2] = {std::vector<ByteTextTable>(columns.size()),
                                           std::vector<ByteTextTable>(columns.size())};
    const auto readHalf = [&](int half, const std::shared_ptr<SqliteConnection>& halfConnection,
                              const QString& where, QString* halfError) {
        return collectTexts(*halfConnection, scan + QStringLiteral(" WHERE ") + where,
                            keys->m_middle, count, texts[half], halfError);
    };
    bool read = true;
    if (count > 0 && keys->split())
        read = keys->inBothHalves(readHalf, error);
    else if (count > 0)
        read = collectTexts(*connection, scan, std::nullopt, count, texts[0], error);
    if (!read)
        return nullptr;
    for (size_t c = 0; c < columns.size(); ++c) {
        for (qsizetype t = 0; t < texts[1][c].size(); ++t)
            texts[0][c].insert(texts[1][c].text(t), 0);
    }

    // Rank the texts as the grid would: those a date field reads as dates are no texts.
    for (size_t c = 0; c < columns.size(); ++c) {
        KeyColumn& column = keys->m_columns[c];
        std::vector<std::string_view> stored;
        QStringList words;
        const ByteTextTable& distinct = texts[0][c];
        for (qsizetype t = 0; t < distinct.size(); ++t) {
            const std::string_view bytes = distinct.text(t);
            const QString text =
                QString::fromUtf8(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
            if (column.fieldType == FieldDate && parseIsoDateTime(text).isValid())
                continue;
            stored.push_back(bytes);
            words.append(text);
        }
        const std::vector<quint32> ranks = collationRanks(words, collator);
        for (size_t i = 0; i < stored.size(); ++i)
            column.textRanks.insert(stored[i], ranks[i]);
    }

    if (!keys->defineFunction(*connection) ||
        (keys->m_second && !keys->defineFunction(*keys->m_second))) {
        setError(error, connection->lastError());
        return nullptr;
    }
    return keys;
}

QString SqliteSortKeys::keySql() const
{
    QString sql = QString::fromLatin1(m_functionName) + u'(' + m_rowid;
    for (const KeyColumn& column : m_columns)
        sql += u',' + SqliteConnection::quotedIdentifier(column.name);
    return sql + u')';
}

void SqliteSortKeys::key(sqlite3_context* context, int arguments, sqlite3_value** values)
{
    const auto* keys = static_cast<const SqliteSortKeys*>(sqlite3_user_data(context));
    const qint64 rowid = sqlite3_value_int64(values[0]);
    // The two halves of a table are sorted on two threads at once.
    thread_local std::vector<unsigned char> bytes;
    bytes.resize(static_cast<size_t>(kMaxValueBytes * (arguments - 1) + 8));
    KeyWriter key{bytes.data()};
    for (int a = 1; a < arguments; ++a) {
        const KeyColumn& column = keys->m_columns[static_cast<size_t>(a - 1)];
        unsigned char* start = key.at;
        putValue(key, column.fieldType, column.textRanks, values[a], rowid);
        if (column.descending) {
            for (unsigned char* b = start; b != key.at; ++b)
                *b = static_cast<unsigned char>(~*b);
        }
    }
    key.put(biased(rowid), 8);
    sqlite3_result_blob(context, bytes.data(), static_cast<int>(key.at - bytes.data()),
                        SQLITE_TRANSIENT);
}

} // namespace tabulor
