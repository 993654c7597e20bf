#include "production/Aggregate.h"

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

} // namespace

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

    if (!m_exact)
        return;
    qint64 addend = 0;
    if (cell.kind == CellValue::Money) {
        if (m_exactKind == CellValue::Integer &&
            __builtin_mul_overflow(m_exactSum, Currency::kScale, &m_exactSum)) {
            m_exact = false;
            return;
        }
        m_exactKind = CellValue::Money;
        addend = cell.number;
    } else if (cell.kind == CellValue::Integer || cell.kind == CellValue::Boolean) {
        if (m_exactKind == CellValue::Money &&
            __builtin_mul_overflow(cell.number, Currency::kScale, &addend)) {
            m_exact = false;
            return;
        }
        if (m_exactKind == CellValue::Integer)
            addend = cell.number;
    } else {
        m_exact = false;
        return;
    }
    if (__builtin_add_overflow(m_exactSum, addend, &m_exactSum))
        m_exact = false;
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
