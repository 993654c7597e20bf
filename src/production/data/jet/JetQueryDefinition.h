#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tabulor {

class JetHandle;
struct JetObject;

// A saved query as a Jet file keeps it: rows of MSysQueries, each saying one thing about the
// query (its type, its flags, a parameter, a source, a column, a join, a condition, a grouping
// or an order key), from which the query is rebuilt.
class JetQueryDefinition
{
public:
    // What a row holds (MSysQueries.Attribute).
    enum Attribute
    {
        TypeRow = 1,
        ParameterRow = 2,
        FlagRow = 3,
        RemoteDatabaseRow = 4,
        SourceRow = 5,
        ColumnRow = 6,
        JoinRow = 7,
        WhereRow = 8,
        GroupByRow = 9,
        HavingRow = 10,
        OrderByRow = 11,
    };

    struct Row
    {
        int attribute = 0;
        QByteArray order;
        QString name1;
        QString name2;
        QString expression;
        int flag = 0;
    };

    enum class Kind
    {
        Select,
        Crosstab,
        Union,
        Action // make-table, append, update, delete, data-definition or pass-through
    };

    // Bits of the flag row's flag.
    static constexpr int SelectStar = 0x01;
    static constexpr int Distinct = 0x02;
    static constexpr int DistinctRow = 0x08;
    static constexpr int Top = 0x10; // the number of rows is the flag row's name1
    static constexpr int TopPercent = 0x20;
    static constexpr int UnionAll = 0x02; // of a union query

    // The definition of a saved query; nullopt with *error set when the file keeps no
    // definitions or they cannot be read.
    static std::optional<JetQueryDefinition> read(const JetHandle& file, const JetObject& query,
                                                  QString* error);

    // The kind its type row gives, else the kind in the query object's flags.
    Kind kind() const;

    // The rows of one attribute in their stored order.
    QList<Row> rowsOf(Attribute attribute) const;

private:
    QList<Row> m_rows; // by attribute, then in their stored order
    quint32 m_objectFlags = 0;
};

} // namespace tabulor
