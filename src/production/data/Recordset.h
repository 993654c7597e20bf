#pragma once

#include "production/base/Export.h"

#include <QString>
#include <QVariant>

#include <string_view>

namespace tabulor {

// A forward-only cursor over rows: what the report reads from a database record source and
// what a host hands in instead of a database. Implementations never throw; a failed move
// returns false and the reader stops there, and readError() tells whether the rows ended or
// could not be read.
class TABULOR_EXPORT Recordset
{
public:
    virtual ~Recordset() = default;

    // The number of fields, or -1 when the object cannot tell (it then is no recordset).
    virtual int fieldCount() const = 0;
    virtual QString fieldName(int field) const = 0;
    // The field's type as a FieldType code.
    virtual qint16 fieldType(int field) const = 0;

    virtual bool moveFirst() = 0;
    virtual bool moveNext() = 0;
    virtual bool atEnd() const = 0;
    // The current record's value of a field; a null QVariant for an empty value.
    virtual QVariant value(int field) const = 0;
    // The current record's value of a field as UTF-8 bytes, valid until the cursor moves, when
    // value() would give exactly that text; false for any other value, which value() gives.
    // Lets a long read skip making a string of every text it has seen before.
    virtual bool utf8Text(int field, std::string_view* text) const
    {
        Q_UNUSED(field);
        Q_UNUSED(text);
        return false;
    }

    // The number of records as far as the source knows it now (may be an estimate).
    virtual qint64 recordCount() const = 0;

    // Why the cursor stopped before the last row: the rows could not be read on (a damaged
    // file, a lost connection), in words for the user that name the database. Empty while
    // the rows can be read and once they have simply ended.
    virtual QString readError() const { return {}; }
};

} // namespace tabulor
