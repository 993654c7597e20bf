#pragma once

#include "production/data/Recordset.h"
#include "production/data/sqlite/SqliteRecordset.h"

#include <memory>

namespace tabulor {

// The rows of two sorted cursors over the two halves of one table, merged into one sorted
// cursor by their sort keys: each half is sorted on a thread of its own.
class SqliteMergedRecordset final : public Recordset
{
public:
    // Both cursors stand on their first rows, with the same fields.
    SqliteMergedRecordset(std::unique_ptr<SqliteRecordset> first,
                          std::unique_ptr<SqliteRecordset> second);

    int fieldCount() const override { return m_first->fieldCount(); }
    QString fieldName(int field) const override { return m_first->fieldName(field); }
    qint16 fieldType(int field) const override { return m_first->fieldType(field); }

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_current == nullptr; }
    QVariant value(int field) const override;
    bool utf8Text(int field, std::string_view* text) const override;
    qint64 recordCount() const override { return m_first->recordCount(); }
    // A half that cannot be read on ends the merged rows too.
    QString readError() const override;

private:
    // Stands on the half whose row comes first.
    void pick();

    std::unique_ptr<SqliteRecordset> m_first;
    std::unique_ptr<SqliteRecordset> m_second;
    SqliteRecordset* m_current = nullptr;
};

} // namespace tabulor
