#pragma once

#include "production/base/FieldType.h"
#include "production/formats/FormatLocale.h"

#include <QString>

namespace tabulor {

class OutlineGrid;
struct ReportField;

// What the properties dialog shows for a field: its first loaded value in the field's format
// (a number when no rows are loaded), placed as the field's alignment code places it.
struct FieldSample
{
    QString text;
    TextPlacement placement = TextPlacement::Left;
};

FieldSample fieldSample(const OutlineGrid& grid, const ReportField& field,
                        const FormatLocale& locale);

} // namespace tabulor
