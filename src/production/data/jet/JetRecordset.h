#pragma once

#include "production/data/Recordset.h"
#include "production/data/jet/JetHandle.h"

#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

namespace tabulor {

// A forward-only cursor over one table of a Jet file, on a handle of its own. libmdb finds
// the rows and the bytes of each value; the values are decoded here, only when asked for.
class JetRecordset final : public Recordset
{
public:
    // Opens the table at a catalog position of `database` and stands on its first row. With a
    // row limit no row past it is read. Null with *error set when the table cannot be read.
    static std::unique_ptr<JetRecordset> open(const JetHandle& database, int catalogIndex,
                                              std::optional<qint64> rowLimit, QString* error);

    int fieldCount() const override { return int(m_columns.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_atEnd; }
    // Values as a report shows them: binary ones (OLE objects, binary columns) by their size.
    QVariant value(int field) const override;
    // The bytes of a binary column's value or of an OLE object in the current row, read in
    // full; empty for any other column and for a damaged value.
    QByteArray bytes(int field) const;

    // The table's row count from its definition, cut to the row limit; never less than the
    // rows read so far.
    qint64 recordCount() const override;
    // Set when a page or value of the table turns out to be damaged; the cursor then stops.
    QString readError() const override { return m_readError; }

private:
    JetRecordset(std::unique_ptr<JetHandle> handle, JetTable table, std::optional<qint64> rowLimit);

    bool fetch();

    std::unique_ptr<JetHandle> m_handle;
    JetTable m_table;
    std::optional<qint64> m_rowLimit;
    QList<MdbColumn*> m_columns;
    QStringList m_names;
    QList<qint16> m_types;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
    // Set by value() too, for a long value whose pages cannot be followed.
    mutable QString m_readError;
};

} // namespace tabulor
