#include "commands/FieldSample.h"

#include "definition/ReportField.h"
#include "production/formats/DisplayFormat.h"
#include "production/grid/OutlineGrid.h"

namespace tabulor {

namespace {

// The code that leaves the placement to the field's type.
constexpr qint16 kTypeAlignment = 9;

} // namespace

FieldSample fieldSample(const OutlineGrid& grid, const ReportField& field,
                        const FormatLocale& locale)
{
    QVariant value = 1234.5;
    qint16 type = FieldDouble;
    const int column = grid.FindGridColumn(field.ID);
    if (column >= 0 && grid.recordCount() > 0) {
        value = grid.value(0, column);
        type = grid.column(column).type;
    }
    const qint16 alignment =
        field.Align == kTypeAlignment ? AlignmentForFieldType(type) : field.Align;
    return {formatValue(value, field.Format, locale), placementOf(alignment)};
}

} // namespace tabulor
