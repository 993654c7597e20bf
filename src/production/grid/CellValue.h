#pragma once

#include "production/base/Currency.h"

#include <QString>
#include <QVariant>

namespace tabulor {

// One cell of the report grid, kept in 16 bytes: the kind of value and the value itself.
// Texts are numbers into their column's dictionary, so repeated texts (regions, products)
// are stored once.
struct CellValue
{
    enum Kind : quint8
    {
        Empty,
        Integer,  // number: a whole number
        Double,   // number
        Money,    // number: exact ten-thousandths
        Boolean,  // number: 0 or 1
        Date,     // julianDay
        DateTime, // msecs since the epoch, UTC
        Time,     // msecs since midnight
        Text,     // textId
        Other,    // index into the column's list of other values (binary data and the like)
    };

    Kind kind = Empty;
    union {
        qint64 number = 0;
        double real;
        quint32 textId;
    };

    bool isEmpty() const { return kind == Empty; }
    bool isNumeric() const
    {
        return kind == Integer || kind == Double || kind == Money || kind == Boolean;
    }
    // The value as a double for arithmetic; 0 for what is not a number.
    double toDouble() const;
};

} // namespace tabulor
