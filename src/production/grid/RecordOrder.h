#pragma once

#include "production/grid/OutlineGrid.h"

#include <QCollator>
#include <QList>

#include <vector>

namespace tabulor {

struct SortKey
{
    int column;
    bool descending = false;
};

// Compares the cells of grid columns as the report sorts them: empty cells first, numbers by
// value, dates and times by time, texts by the collation given. Cells of different kinds
// order numbers, then dates, times, texts and other values.
class CellOrder
{
public:
    CellOrder(const OutlineGrid& grid, const QList<SortKey>& keys, const QCollator& collator);

    // Whether record a comes before record b.
    bool before(qint32 a, qint32 b) const;
    // Compares one column's cells of two records: negative, zero or positive.
    int compare(int key, qint32 a, qint32 b) const;

private:
    struct Key
    {
        const ColumnCells* cells;
        bool descending;
        std::vector<quint32> textRanks; // collation rank of each text of the column
    };
    std::vector<Key> m_keys;
};

// The collation rank of each text, by its index: texts the collation holds equal share a rank.
std::vector<quint32> collationRanks(const QStringList& texts, const QCollator& collator);

// Whether two cells of a column hold the same value in the report's order: texts the
// collation holds equal are the same.
bool sameCellValue(const ColumnCells& cells, qsizetype a, qsizetype b, const QCollator& collator);

// The records of the grid in report order: a stable sort by the keys, first key first.
std::vector<qint32> sortedRecords(const OutlineGrid& grid, const QList<SortKey>& keys,
                                  const QCollator& collator);

} // namespace tabulor
