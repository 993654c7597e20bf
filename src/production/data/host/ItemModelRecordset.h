#pragma once

#include "production/data/Recordset.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QPointer>

namespace tabulor {

// The field type that a value's own type stands for: bool Boolean, unsigned char Byte, short
// Integer, int Long, 64-bit and unsigned integers BigInt, float Single, double Double, dates
// and times Date, QByteArray LongBinary, QUuid Guid, Currency Currency, anything else Text.
qint16 fieldTypeForValue(const QVariant& value);

// A host's Qt item model read as a recordset: its columns are the fields, named by the
// horizontal header, and its top-level rows the records. A model that loads rows on demand is
// asked for more as the cursor reaches the last loaded row. The model stays the host's; once
// it is destroyed the recordset can no longer tell its fields.
class TABULOR_EXPORT ItemModelRecordset final : public Recordset
{
public:
    // fieldTypes gives the type of each column in order; a column without one takes the type
    // of its first value that is neither empty nor an empty text, or Text when there is none.
    // role is the item data role whose values are read.
    explicit ItemModelRecordset(QAbstractItemModel* model, QList<qint16> fieldTypes = {},
                                int role = Qt::DisplayRole);

    int fieldCount() const override;
    QString fieldName(int field) const override;
    qint16 fieldType(int field) const override;

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override;
    QVariant value(int field) const override;

    // The rows the model has now; a model that loads on demand may have more to come.
    qint64 recordCount() const override;

private:
    // Asks a model that loads on demand for more rows once the cursor has reached its end.
    void fetchIfAtEnd();

    QPointer<QAbstractItemModel> m_model;
    QList<qint16> m_givenTypes;
    int m_role;
    int m_row = 0;
    mutable QHash<int, qint16> m_inferredTypes;
};

} // namespace tabulor
