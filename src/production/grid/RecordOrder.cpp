#include "production/grid/RecordOrder.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace tabulor {

namespace {

int kindGroup(CellValue::Kind kind)
{
    switch (kind) {
    case CellValue::Empty:
        return 0;
    case CellValue::Integer:
    case CellValue::Double:
    case CellValue::Money:
    case CellValue::Boolean:
        return 1;
    case CellValue::Date:
    case CellValue::DateTime:
        return 2;
    case CellValue::Time:
        return 3;
    case CellValue::Text:
        return 4;
    case CellValue::Other:
        return 5;
    }
    return 5;
}

template <typename T> int threeWay(T a, T b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

int compareNumbers(const CellValue& a, const CellValue& b)
{
    if (a.kind == b.kind && a.kind != CellValue::Double)
        return threeWay(a.number, b.number);
    return threeWay(a.toDouble(), b.toDouble());
}

// A date and a date-time compare by their time; a date stands for its midnight (UTC).
qint64 msecs(const CellValue& c)
{
    constexpr qint64 kEpochJulianDay = 2440588;
    constexpr qint64 kDay = 86400000;
    return c.kind == CellValue::Date ? (c.number - kEpochJulianDay) * kDay : c.number;
}

} // namespace

std::vector<quint32> collationRanks(const QStringList& texts, const QCollator& collator)
{
    std::vector<quint32> byCollation(static_cast<size_t>(texts.size()));
    std::iota(byCollation.begin(), byCollation.end(), 0u);
    std::stable_sort(byCollation.begin(), byCollation.end(), [&](quint32 a, quint32 b) {
        return collator.compare(texts.at(a), texts.at(b)) < 0;
    });
    std::vector<quint32> ranks(byCollation.size());
    quint32 rank = 0;
    for (size_t i = 0; i < byCollation.size(); ++i) {
        if (i > 0 && collator.compare(texts.at(byCollation[i - 1]), texts.at(byCollation[i])) != 0)
            ++rank;
        ranks[byCollation[i]] = rank;
    }
    return ranks;
}

template <typename CompareTexts>
int compareCells(const CellValue& x, const CellValue& y, CompareTexts compareTexts)
{
    const int gx = kindGroup(x.kind);
    const int gy = kindGroup(y.kind);
    if (gx != gy)
        return threeWay(gx, gy);
    switch (gx) {
    case 1:
        return compareNumbers(x, y);
    case 2:
        return threeWay(msecs(x), msecs(y));
    case 3:
    case 5:
        return threeWay(x.number, y.number);
    case 4:
        return compareTexts(x.textId, y.textId);
    default:
        return 0;
    }
}

bool sameCellValue(const ColumnCells& cells, qsizetype a, qsizetype b, const QCollator& collator)
{
    return compareCells(cells.at(a), cells.at(b), [&](quint32 x, quint32 y) {
               return x == y ? 0 : collator.compare(cells.text(x), cells.text(y));
           }) == 0;
}

CellOrder::CellOrder(const OutlineGrid& grid, const QList<SortKey>& keys, const QCollator& collator)
{
    for (const SortKey& k : keys) {
        const ColumnCells* cells = &grid.cells(k.column);
        m_keys.push_back(Key{cells, k.descending, collationRanks(cells->texts(), collator)});
    }
}

int CellOrder::compare(int keyIndex, qint32 a, qint32 b) const
{
    const Key& key = m_keys[static_cast<size_t>(keyIndex)];
    const int result = compareCells(key.cells->at(a), key.cells->at(b), [&](quint32 x, quint32 y) {
        return threeWay(key.textRanks[x], key.textRanks[y]);
    });
    return key.descending ? -result : result;
}

bool CellOrder::before(qint32 a, qint32 b) const
{
    for (int k = 0; k < static_cast<int>(m_keys.size()); ++k) {
        const int c = compare(k, a, b);
        if (c != 0)
            return c < 0;
    }
    return false;
}

namespace {

// A key whose cells all map to small whole numbers in order (0 for empty): collation ranks of
// texts, or whole numbers, dates and times within a small range. Several such keys pack into
// one 64-bit number per record, so that most comparisons of a sort are one integer compare.
struct PackedKey
{
    std::vector<quint64> values; // per record
    int bits = 0;
};

int bitsFor(quint64 largest)
{
    int bits = 1;
    while (bits < 64 && (largest >> bits) != 0)
        ++bits;
    return bits;
}

std::optional<PackedKey> packedKey(const OutlineGrid& grid, const SortKey& key,
                                   const QCollator& collator)
{
    const ColumnCells& cells = grid.cells(key.column);
    const qsizetype n = grid.recordCount();
    CellValue::Kind kind = CellValue::Empty;
    qint64 low = std::numeric_limits<qint64>::max();
    qint64 high = std::numeric_limits<qint64>::min();
    for (qsizetype r = 0; r < n; ++r) {
        const CellValue& c = cells.at(r);
        if (c.isEmpty())
            continue;
        if (kind != CellValue::Empty && c.kind != kind)
            return std::nullopt; // mixed kinds compare through the general rule
        kind = c.kind;
        if (kind == CellValue::Double || kind == CellValue::Other)
            return std::nullopt;
        if (kind != CellValue::Text) {
            low = std::min(low, c.number);
            high = std::max(high, c.number);
        }
    }
    PackedKey packed;
    packed.values.resize(static_cast<size_t>(n), 0);
    std::vector<quint32> ranks;
    quint64 largest = 0;
    if (kind == CellValue::Text) {
        ranks = collationRanks(cells.texts(), collator);
        for (quint32 rank : ranks)
            largest = std::max<quint64>(largest, rank + 1);
    } else if (kind != CellValue::Empty) {
        if (__builtin_sub_overflow(high, low, &high) || high >= (qint64(1) << 40))
            return std::nullopt;
        largest = static_cast<quint64>(high) + 1;
    }
    for (qsizetype r = 0; r < n; ++r) {
        const CellValue& c = cells.at(r);
        quint64 v = 0;
        if (!c.isEmpty())
            v = kind == CellValue::Text ? ranks[c.textId] + 1
                                        : static_cast<quint64>(c.number - low) + 1;
        if (key.descending)
            v = largest + 1 - v; // empty cells, 0, go last as the order turns round
        packed.values[static_cast<size_t>(r)] = v;
    }
    packed.bits = bitsFor(largest + 1);
    return packed;
}

} // namespace

std::vector<qint32> sortedRecords(const OutlineGrid& grid, const QList<SortKey>& keys,
                                  const QCollator& collator)
{
    std::vector<qint32> records(static_cast<size_t>(grid.recordCount()));
    std::iota(records.begin(), records.end(), 0);
    if (keys.isEmpty())
        return records;

    // Pack the leading keys that allow it into one number per record.
    std::vector<quint64> prefix(records.size(), 0);
    int used = 0;
    int packedKeys = 0;
    for (const SortKey& key : keys) {
        const auto packed = packedKey(grid, key, collator);
        if (!packed || used + packed->bits > 64)
            break;
        for (size_t r = 0; r < prefix.size(); ++r)
            prefix[r] = (prefix[r] << packed->bits) | packed->values[r];
        used += packed->bits;
        ++packedKeys;
    }

    // Records with equal prefixes keep their load order; the remaining keys, if any, then
    // order each run of equal prefixes.
    std::sort(records.begin(), records.end(), [&](qint32 a, qint32 b) {
        const quint64 pa = prefix[static_cast<size_t>(a)];
        const quint64 pb = prefix[static_cast<size_t>(b)];
        return pa != pb ? pa < pb : a < b;
    });
    if (packedKeys == keys.size())
        return records;
    const CellOrder rest(grid, keys.mid(packedKeys), collator);
    auto runStart = records.begin();
    while (runStart != records.end()) {
        const quint64 p = prefix[static_cast<size_t>(*runStart)];
        auto runEnd = std::find_if(runStart, records.end(),
                                   [&](qint32 r) { return prefix[static_cast<size_t>(r)] != p; });
        std::stable_sort(runStart, runEnd, [&](qint32 a, qint32 b) { return rest.before(a, b); });
        runStart = runEnd;
    }
    return records;
}

} // namespace tabulor
