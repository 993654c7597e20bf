#pragma once

#include "production/formats/DisplayFormat.h"
#include "production/grid/OutlineGrid.h"

#include <QString>

#include <vector>

namespace tabulor {

// The texts a built report grid shows: each cell through its column's display format, group
// rows with their caption in the group's column and their totals in theirs.
class GridText
{
public:
    GridText(const OutlineGrid& grid, FormatLocale locale);

    QString cellText(const GridRow& row, int gridColumn) const;
    // The texts of a row in report column order.
    QStringList rowTexts(const GridRow& row) const;
    // A value of a grid column through the column's format.
    QString formattedValue(const CellValue& value, int gridColumn) const;
    QString formattedValue(const QVariant& value, int gridColumn) const;
    // A group row's caption in the group's column, for a group of this value.
    QString caption(const GridRow& row, const QString& valueText) const;
    // A total for entry t of the group plan's totals, as a closing row shows it.
    QString totalText(size_t t, const CellValue& total) const;

private:
    // A record's cell through its column's format. Texts repeat down a column, so each text
    // of the column's dictionary is formatted once.
    QString recordText(qint32 record, int gridColumn) const;

    const OutlineGrid& m_grid;
    FormatLocale m_locale;
    std::vector<DisplayFormat> m_formats; // per grid column
    // Per grid column, the formatted texts of its dictionary by text number (null: not yet),
    // and the numbering of the texts they were formatted for.
    mutable std::vector<std::vector<QString>> m_formattedTexts;
    mutable std::vector<quint32> m_textNumbering;
};

} // namespace tabulor
