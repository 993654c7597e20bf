#include "production/grid/Aggregate.h"

#include <cmath>

namespace tabulor {

namespace {

CellValue realCell(double value)
{
    CellValue cell;
    cell.kind = CellValue::Double;
    cell.real = value;
    return cell;
}

// Dates and times take part in Max and Min by their stored number.
bool isOrdered(const CellValue& cell)
{
    return cell.isNumeric() || cell.kind == CellValue::Date || cell.kind == CellValue::DateTime ||
           cell.kind == CellValue::Time;
}

double orderKey(const CellValue& cell)
{
    return cell.isNumeric() ? cell.toDouble() : static_cast<double>(cell.number);
}

// Whole numbers become money by scaling; false when that overflows.
bool toMoney(qint64& value)
{
    return !__builtin_mul_overflow(value, Currency::kScale, &value);
}

} // namespace

void Accumulator::addExact(CellValue::Kind kind, qint64 value, bool exact)
{
    if (!m_exact || !exact) {
        m_exact = false;
        return;
    }
    if (kind != m_exactKind) {
        // One side is money, the other whole numbers: the sum becomes money.
        if (m_exactKind == CellValue::Integer ? !toMoney(m_exactSum) : !toMoney(value)) {
            m_exact = false;
            return;
        }
        m_exactKind = CellValue::Money;
    }
    if (__builtin_add_overflow(m_exactSum, value, &m_exactSum))
        m_exact = false;
}

void Accumulator::add(const CellValue& cell)
{
    if (cell.isEmpty())
        return;
    ++m_nonEmpty;
    if (!isOrdered(cell))
        return;
    if (m_min.isEmpty() || orderKey(cell) < orderKey(m_min))
        m_min = cell;
    if (m_max.isEmpty() || orderKey(cell) > orderKey(m_max))
        m_max = cell;
    if (!cell.isNumeric())
        return;

    const double x = cell.toDouble();
    ++m_count;
    m_sum += x;
    const double delta = x - m_mean;
    m_mean += delta / static_cast<double>(m_count);
    m_m2 += delta * (x - m_mean);
    const bool exact = cell.kind != CellValue::Double;
    addExact(cell.kind == CellValue::Money ? CellValue::Money : CellValue::Integer, cell.number,
             exact);
}

void Accumulator::merge(const Accumulator& other)
{
    m_nonEmpty += other.m_nonEmpty;
    if (!other.m_min.isEmpty() && (m_min.isEmpty() || orderKey(other.m_min) < orderKey(m_min)))
        m_min = other.m_min;
    if (!other.m_max.isEmpty() && (m_max.isEmpty() || orderKey(other.m_max) > orderKey(m_max)))
        m_max = other.m_max;
    if (other.m_count == 0)
        return;
    // The running mean and squared deviations of two parts combine exactly.
    const double n = static_cast<double>(m_count + other.m_count);
    const double delta = other.m_mean - m_mean;
    m_mean += delta * static_cast<double>(other.m_count) / n;
    m_m2 += other.m_m2 +
            delta * delta * static_cast<double>(m_count) * static_cast<double>(other.m_count) / n;
    m_count += other.m_count;
    m_sum += other.m_sum;
    addExact(other.m_exactKind, other.m_exactSum, other.m_exact);
}

CellValue Accumulator::exactSum() const
{
    CellValue cell;
    cell.kind = m_exactKind;
    cell.number = m_exactSum;
    return cell;
}

CellValue Accumulator::result(qint16 aggregate, double grandTotal) const
{
    switch (aggregate) {
    case AggregateSum:
        return m_count == 0 ? CellValue{} : m_exact ? exactSum() : realCell(m_sum);
    case AggregatePercent:
        return m_count == 0 || grandTotal == 0 ? CellValue{} : realCell(m_sum / grandTotal * 100.0);
    case AggregateCount: {
        CellValue cell;
        cell.kind = CellValue::Integer;
        cell.number = m_nonEmpty;
        return cell;
    }
    case AggregateAverage:
        return m_count == 0 ? CellValue{} : realCell(m_sum / static_cast<double>(m_count));
    case AggregateMax:
        return m_max;
    case AggregateMin:
        return m_min;
    case AggregateStdDev:
        return m_count < 2 ? CellValue{}
                           : realCell(std::sqrt(m_m2 / static_cast<double>(m_count - 1)));
    default:
        return CellValue{};
    }
}

} // namespace tabulor
