#pragma once

#include "production/base/ByteTextTable.h"
#include "production/data/Recordset.h"
#include "production/grid/CellValue.h"

#include <QHash>
#include <QList>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace tabulor {

// The cells of one grid column, record by record, with the column's text dictionary.
class ColumnCells
{
public:
    void append(const QVariant& value);
    // Appends the current record's value of a field.
    void append(const Recordset& records, int field);
    void clear();
    // Keeps only these records, numbered anew in this order. The dictionary stays, so that
    // texts keep their numbers, unless it has grown past what a few records justify.
    void keep(const std::vector<qint32>& records);
    void reserve(qsizetype records) { m_cells.reserve(static_cast<size_t>(records)); }

    qsizetype size() const { return static_cast<qsizetype>(m_cells.size()); }
    const CellValue& at(qsizetype record) const { return m_cells[static_cast<size_t>(record)]; }
    // The cell as the value it was loaded from.
    QVariant value(qsizetype record) const { return toVariant(at(record)); }
    QVariant toVariant(const CellValue& cell) const;

    const QString& text(quint32 textId) const { return m_texts.at(textId); }
    const QStringList& texts() const { return m_texts; }
    // Changes whenever texts are numbered anew: what was cached by text number is stale.
    quint32 textNumbering() const { return m_textNumbering; }

private:
    CellValue fromVariant(const QVariant& value);
    CellValue textCell(const QString& text);

    std::vector<CellValue> m_cells;
    QStringList m_texts;
    QHash<QString, quint32> m_textIds;
    ByteTextTable m_utf8TextIds; // the texts met as UTF-8, by their bytes
    quint32 m_textNumbering = 0;
    QList<QVariant> m_others;
};

} // namespace tabulor
