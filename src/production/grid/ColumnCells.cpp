#include "production/grid/ColumnCells.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

namespace tabulor {

namespace {

CellValue numberCell(CellValue::Kind kind, qint64 number)
{
    CellValue cell;
    cell.kind = kind;
    cell.number = number;
    return cell;
}

} // namespace

void ColumnCells::append(const QVariant& value)
{
    m_cells.push_back(fromVariant(value));
}

void ColumnCells::append(const Recordset& records, int field)
{
    std::string_view utf8;
    if (!records.utf8Text(field, &utf8)) {
        append(records.value(field));
        return;
    }
    quint32 id = m_utf8TextIds.find(utf8);
    if (id == ByteTextTable::kAbsent) {
        const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
        id = textCell(text).textId;
        m_utf8TextIds.insert(utf8, id);
    }
    CellValue cell;
    cell.kind = CellValue::Text;
    cell.textId = id;
    m_cells.push_back(cell);
}

void ColumnCells::clear()
{
    m_cells.clear();
    m_texts.clear();
    m_textIds.clear();
    m_utf8TextIds = ByteTextTable();
    m_others.clear();
    ++m_textNumbering;
}

void ColumnCells::keep(const std::vector<qint32>& records)
{
    // Past this many texts the dictionary starts again from the records kept.
    constexpr qsizetype kMaxKeptTexts = 16384;
    if (m_texts.size() > kMaxKeptTexts || !m_others.isEmpty()) {
        ColumnCells kept;
        kept.reserve(size());
        for (qint32 record : records)
            kept.append(value(record));
        kept.m_textNumbering = m_textNumbering + 1;
        *this = std::move(kept);
        return;
    }
    std::vector<CellValue> cells;
    // As many records are likely to follow as were there before.
    cells.reserve(m_cells.size());
    for (qint32 record : records)
        cells.push_back(m_cells[static_cast<size_t>(record)]);
    m_cells = std::move(cells);
}

CellValue ColumnCells::textCell(const QString& text)
{
    auto found = m_textIds.constFind(text);
    if (found == m_textIds.cend()) {
        found = m_textIds.insert(text, static_cast<quint32>(m_texts.size()));
        m_texts.append(text);
    }
    CellValue cell;
    cell.kind = CellValue::Text;
    cell.textId = *found;
    return cell;
}

CellValue ColumnCells::fromVariant(const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return CellValue{};
    switch (value.typeId()) {
    case QMetaType::Bool:
        return numberCell(CellValue::Boolean, value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return numberCell(CellValue::Integer, value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float: {
        CellValue cell;
        cell.kind = CellValue::Double;
        cell.real = value.toDouble();
        return cell;
    }
    case QMetaType::QDate:
        return numberCell(CellValue::Date, value.toDate().toJulianDay());
    case QMetaType::QDateTime:
        return numberCell(CellValue::DateTime, value.toDateTime().toMSecsSinceEpoch());
    case QMetaType::QTime:
        return numberCell(CellValue::Time, value.toTime().msecsSinceStartOfDay());
    case QMetaType::QString:
        return textCell(value.toString());
    default:
        break;
    }
    if (value.userType() == qMetaTypeId<Currency>())
        return numberCell(CellValue::Money, value.value<Currency>().tenThousandths);
    m_others.append(value);
    return numberCell(CellValue::Other, m_others.size() - 1);
}

QVariant ColumnCells::toVariant(const CellValue& cell) const
{
    switch (cell.kind) {
    case CellValue::Empty:
        return QVariant();
    case CellValue::Integer:
        return QVariant(cell.number);
    case CellValue::Double:
        return QVariant(cell.real);
    case CellValue::Money:
        return QVariant::fromValue(Currency{cell.number});
    case CellValue::Boolean:
        return QVariant(cell.number != 0);
    case CellValue::Date:
        return QVariant(QDate::fromJulianDay(cell.number));
    case CellValue::DateTime:
        return QVariant(QDateTime::fromMSecsSinceEpoch(cell.number, Qt::UTC));
    case CellValue::Time:
        return QVariant(QTime::fromMSecsSinceStartOfDay(static_cast<int>(cell.number)));
    case CellValue::Text:
        return QVariant(m_texts.at(cell.textId));
    case CellValue::Other:
        return m_others.at(cell.number);
    }
    return QVariant();
}

} // namespace tabulor
