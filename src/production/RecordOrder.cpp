#include "production/RecordOrder.h"

#include <algorithm>
#include <numeric>

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

CellOrder::CellOrder(const OutlineGrid& grid, const QList<SortKey>& keys, const QCollator& collator)
{
    for (const SortKey& k : keys) {
        Key key{&grid.cells(k.column), k.descending, {}};
        const QStringList& texts = key.cells->texts();
        std::vector<quint32> byCollation(static_cast<size_t>(texts.size()));
        std::iota(byCollation.begin(), byCollation.end(), 0u);
        std::stable_sort(byCollation.begin(), byCollation.end(), [&](quint32 a, quint32 b) {
            return collator.compare(texts.at(a), texts.at(b)) < 0;
        });
        key.textRanks.resize(byCollation.size());
        quint32 rank = 0;
        for (size_t i = 0; i < byCollation.size(); ++i) {
            if (i > 0 &&
                collator.compare(texts.at(byCollation[i - 1]), texts.at(byCollation[i])) != 0)
                ++rank;
            key.textRanks[byCollation[i]] = rank;
        }
        m_keys.push_back(std::move(key));
    }
}

int CellOrder::compare(int keyIndex, qint32 a, qint32 b) const
{
    const Key& key = m_keys[static_cast<size_t>(keyIndex)];
    const CellValue& x = key.cells->at(a);
    const CellValue& y = key.cells->at(b);
    const int gx = kindGroup(x.kind);
    const int gy = kindGroup(y.kind);
    int result = 0;
    if (gx != gy) {
        result = threeWay(gx, gy);
    } else {
        switch (gx) {
        case 1:
            result = compareNumbers(x, y);
            break;
        case 2:
            result = threeWay(msecs(x), msecs(y));
            break;
        case 3:
        case 5:
            result = threeWay(x.number, y.number);
            break;
        case 4:
            result = threeWay(key.textRanks[x.textId], key.textRanks[y.textId]);
            break;
        default:
            break;
        }
    }
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

std::vector<qint32> sortedRecords(const OutlineGrid& grid, const QList<SortKey>& keys,
                                  const QCollator& collator)
{
    std::vector<qint32> records(static_cast<size_t>(grid.recordCount()));
    std::iota(records.begin(), records.end(), 0);
    if (keys.isEmpty())
        return records;
    const CellOrder order(grid, keys, collator);
    std::stable_sort(records.begin(), records.end(),
                     [&](qint32 a, qint32 b) { return order.before(a, b); });
    return records;
}

} // namespace tabulor
