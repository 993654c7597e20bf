#include "production/grid/CellValue.h"

namespace tabulor {

double CellValue::toDouble() const
{
    switch (kind) {
    case Integer:
    case Boolean:
        return static_cast<double>(number);
    case Double:
        return real;
    case Money:
        return Currency{number}.toDouble();
    default:
        return 0.0;
    }
}

} // namespace tabulor
