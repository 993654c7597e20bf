#pragma once

// The table itself is plain C, and C hosts may include this header for it.
#include "production/data/host/tabulor_recordset.h"

#ifdef __cplusplus

#include "production/data/Recordset.h"

namespace tabulor {

// A recordset read through a host's table of C functions. A function the table leaves out
// (null, or beyond the size the host gave) reads as "nothing to tell": no fields, no records.
class CallbackRecordset final : public Recordset
{
public:
    explicit CallbackRecordset(const tabulor_recordset_callbacks& callbacks);
    ~CallbackRecordset() override;
    CallbackRecordset(const CallbackRecordset&) = delete;
    CallbackRecordset& operator=(const CallbackRecordset&) = delete;

    int fieldCount() const override;
    QString fieldName(int field) const override;
    qint16 fieldType(int field) const override;

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override;
    // A date the reader cannot take stays text; a kind it does not know reads as empty.
    QVariant value(int field) const override;

    // The host's count, or the records visited so far when it has none.
    qint64 recordCount() const override;

private:
    // Notes how far the cursor has come after a move.
    bool moved(bool succeeded);

    tabulor_recordset_callbacks m_callbacks = {};
    qint64 m_position = -1;
    qint64 m_visited = 0;
};

} // namespace tabulor

#endif
