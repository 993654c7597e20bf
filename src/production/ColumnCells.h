#pragma once

#include "production/CellValue.h"

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
    void clear();
    void reserve(qsizetype records) { m_cells.reserve(static_cast<size_t>(records)); }

    qsizetype size() const { return static_cast<qsizetype>(m_cells.size()); }
    const CellValue& at(qsizetype record) const { return m_cells[static_cast<size_t>(record)]; }
    // The cell as the value it was loaded from.
    QVariant value(qsizetype record) const { return toVariant(at(record)); }
    QVariant toVariant(const CellValue& cell) const;

    const QString& text(quint32 textId) const { return m_texts.at(textId); }
    const QStringList& texts() const { return m_texts; }

private:
    CellValue fromVariant(const QVariant& value);

    std::vector<CellValue> m_cells;
    QStringList m_texts;
    QHash<QString, quint32> m_textIds;
    QList<QVariant> m_others;
};

} // namespace tabulor
