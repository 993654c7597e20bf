#pragma once

#include "production/grid/CellValue.h"

#include <QtGlobal>

namespace tabulor {

// The subtotal functions a field can carry, by their codes in definitions.
enum AggregateCode : qint16
{
    AggregateNone = 0,
    AggregateSum = 1,
    AggregatePercent = 2, // the group's sum as a percentage of the column's grand total
    AggregateCount = 3,   // values that are not empty
    AggregateAverage = 4,
    AggregateMax = 5,
    AggregateMin = 6,
    AggregateStdDev = 7, // sample standard deviation
};

// Collects the values of one column over a group and gives any of the subtotals. Count counts
// the cells that are not empty; the other subtotals take numbers (Max and Min also dates and
// times). Sums of whole numbers and money stay exact.
class Accumulator
{
public:
    void add(const CellValue& cell);
    // Takes in the values another accumulator has collected, as if they had been added here.
    void merge(const Accumulator& other);
    void reset() { *this = Accumulator(); }

    double sum() const { return m_sum; }
    // The subtotal; empty where it has no value (an average of nothing, a deviation of fewer
    // than two values, a percentage of a zero total).
    CellValue result(qint16 aggregate, double grandTotal = 0) const;

private:
    CellValue exactSum() const;
    void addExact(CellValue::Kind kind, qint64 value, bool exact);

    qint64 m_nonEmpty = 0;
    qint64 m_count = 0; // numbers
    double m_sum = 0;
    qint64 m_exactSum = 0;
    CellValue::Kind m_exactKind = CellValue::Integer; // Integer, or Money once money was seen
    bool m_exact = true;
    double m_mean = 0; // running mean and sum of squared deviations, for the deviation
    double m_m2 = 0;
    CellValue m_min;
    CellValue m_max;
};

} // namespace tabulor
