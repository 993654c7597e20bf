#pragma once

#include "production/data/Recordset.h"
#include "production/data/jet/JetQueryWorkspace.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <optional>

namespace tabulor {

// The rows of a saved query as the engine gives them, typed like the fields they come from.
// It keeps the engine the query ran in.
class JetQueryRecordset final : public Recordset
{
public:
    JetQueryRecordset(JetEngine engine, SqliteStatement statement, std::optional<qint64> rowLimit);

    // Names and types once the first row has been read: a column read straight from a loaded
    // table has its field's type, a computed one the type in columnTypes (by the column's
    // name), and a column whose type is still not known is typed by that row's value.
    void describe(const QHash<QString, qint16>& columnTypes);

    int fieldCount() const override { return int(m_names.size()); }
    QString fieldName(int field) const override { return m_names.value(field); }
    qint16 fieldType(int field) const override { return m_types.value(field); }

    bool moveFirst() override;
    bool moveNext() override;
    bool atEnd() const override { return m_atEnd; }

    QVariant value(int field) const override;

    qint64 recordCount() const override { return m_rowsRead; }
    QString readError() const override { return m_readError; }

    // Reads the next row, unless the row limit is reached; the engine's result code. A failed
    // step after the first ends the rows with a read error.
    int step();

    // The engine's message for the last error.
    QString lastError() const;

private:
    JetEngine m_engine;
    SqliteStatement m_statement;
    std::optional<qint64> m_rowLimit;
    QStringList m_names;
    QList<qint16> m_types;
    bool m_atEnd = true;
    qint64 m_rowsRead = 0;
    QString m_readError;
};

} // namespace tabulor
