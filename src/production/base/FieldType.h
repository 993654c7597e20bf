#pragma once

#include <QtGlobal>

namespace tabulor {

// Field types are kept in the classic data-access type codes, which definition files, the
// alignment rule and the field defaults are written against.
enum FieldType : qint16
{
    FieldBoolean = 1,
    FieldByte = 2,
    FieldInteger = 3,
    FieldLong = 4,
    FieldCurrency = 5,
    FieldSingle = 6,
    FieldDouble = 7,
    FieldDate = 8,
    FieldBinary = 9,
    FieldText = 10,
    FieldLongBinary = 11,
    FieldMemo = 12,
    FieldGuid = 15,
    FieldBigInt = 16,
    FieldNumeric = 19,
    FieldDecimal = 20,
    FieldFloat = 21,
};

// Grid alignment codes: 0 is left/top, 6 is right/top.
inline constexpr qint16 AlignLeftTop = 0;
inline constexpr qint16 AlignRightTop = 6;

// Whether fields of the type hold fractional numbers (money among them), so that whole numbers
// stored in them read as doubles.
bool isFractional(qint16 fieldType);
// Whether fields of the type hold text (short or long).
bool isText(qint16 fieldType);

// Numbers are right-aligned, everything else (text, dates, booleans, binary) left-aligned.
qint16 AlignmentForFieldType(qint16 fieldType);

} // namespace tabulor
