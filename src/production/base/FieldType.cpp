#include "production/base/FieldType.h"

namespace tabulor {

bool isFractional(qint16 fieldType)
{
    switch (fieldType) {
    case FieldCurrency:
    case FieldSingle:
    case FieldDouble:
    case FieldFloat:
    case FieldDecimal:
    case FieldNumeric:
        return true;
    default:
        return false;
    }
}

bool isText(qint16 fieldType)
{
    return fieldType == FieldText || fieldType == FieldMemo;
}

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
