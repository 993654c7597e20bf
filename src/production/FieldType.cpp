#include "production/FieldType.h"

namespace tabulor {

qint16 AlignmentForFieldType(qint16 fieldType)
{
    switch (fieldType) {
    case FieldBigInt:
    case FieldByte:
    case FieldCurrency:
    case FieldDecimal:
    case FieldDouble:
    case FieldFloat:
    case FieldInteger:
    case FieldLong:
    case FieldNumeric:
    case FieldSingle:
        return AlignRightTop;
    default:
        return AlignLeftTop;
    }
}

} // namespace tabulor
