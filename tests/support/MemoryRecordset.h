#pragma once

#include "production/data/Recordset.h"

#include <QList>
#include <QVariant>

namespace tabulor::test {

// A host recordset held in memory. reportedCount is what it says its record count is, as
// a real recordset may report less than it holds until it has been read to the end.
class MemoryRecordset : public Recordset
{
public:
    struct Field
    {
        QString name;
        qint16 type;
    };

    MemoryRecordset(QList<Field> fields, QList<QList<QVariant>> rows)
        : m_fields(std::move(fields)), m_rows(std::move(rows)), reportedCount(m_rows.size())
    {
    }

    // A recordset with one numbered Long field "n" and count rows.
    static MemoryRecordset numbered(int count)
    {
        QList<QList<QVariant>> rows;
        for (int i = 1; i <= count; ++i)
            rows.append(QList<QVariant>{i});
        return MemoryRecordset({{QStringLiteral("n"), 4}}, rows);
    }

    int fieldCount() const override { return static_cast<int>(m_fields.size()); }
    QString fieldName(int field) const override { return m_fields.at(field).name; }
    qint16 fieldType(int field) const override { return m_fields.at(field).type; }
    bool moveFirst() override
    {
        m_position = 0;
        return true;
    }
    bool moveNext() override { return ++m_position <= m_rows.size(); }
    bool atEnd() const override { return m_position >= m_rows.size(); }
    QVariant value(int field) const override { return m_rows.at(m_position).at(field); }
    qint64 recordCount() const override { return reportedCount; }

private:
    QList<Field> m_fields;
    QList<QList<QVariant>> m_rows;
    qsizetype m_position = 0;

public:
    qint64 reportedCount;
};

// Something a host may pass that is not a recordset: it cannot tell its fields.
class NotARecordset : public MemoryRecordset
{
public:
    NotARecordset() : MemoryRecordset({}, {}) {}
    int fieldCount() const override { return -1; }
};

} // namespace tabulor::test
