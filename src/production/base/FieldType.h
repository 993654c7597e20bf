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

// Grid alignment codes: 0 is left/top, 3 centre/top, 6 right/top.
inline constexpr qint16 AlignLeftTop = 0;
inline constexpr qint16 AlignCentreTop = 3;
inline constexpr qint16 AlignRightTop = 6;

// Where text stands across its cell.
enum class TextPlacement
{
    Left,
    Centre,
    Right,
};

// The placement of a grid alignment code: centre and right by their codes, left for any other
// code, as the printed report and the designer's grid both place text.
constexpr TextPlacement placementOf(qint16 alignment)
{
    return alignment == AlignCentreTop  ? TextPlacement::Centre
           : alignment == AlignRightTop ? TextPlacement::Right
                                        : TextPlacement::Left;
}

// Whether fields of the type hold fractional numbers (money among them), so that whole numbers
// stored in them read as doubles.
bool isFractional(qint16 fieldType);
// Whether fields of the type hold text (short or long).
bool isText(qint16 fieldType);

// Numbers are right-aligned, everything else (text, dates, booleans, binary) left-aligned.
qint16 AlignmentForFieldType(qint16 fieldType);

} // namespace tabulor
