#include "production/data/jet/JetQueryDefinition.h"

#include "production/data/jet/JetCatalog.h"
#include "production/data/jet/JetHandle.h"
#include "production/data/jet/JetRecordset.h"

#include <QHash>

#include <algorithm>

namespace tabulor {

namespace {

// The query kinds in the definition's type row.
constexpr int CrosstabType = 6;
constexpr int UnionType = 9;
constexpr int SelectType = 1;

} // namespace

std::optional<JetQueryDefinition> JetQueryDefinition::read(const JetHandle& file,
                                                           const JetObject& query, QString* error)
{
    const int index = file.findTable(QStringLiteral("MSysQueries"));
    if (index < 0) {
        *error = QStringLiteral("the database keeps no query definitions");
        return std::nullopt;
    }
    const std::unique_ptr<JetRecordset> rows = JetRecordset::open(file, index, std::nullopt, error);
    if (!rows)
        return std::nullopt;
    QHash<QString, int> field;
    for (int i = 0; i < rows->fieldCount(); ++i)
        field.insert(rows->fieldName(i), i);
    const auto value = [&](const char* name) { return rows->value(field.value(name, -1)); };
    JetQueryDefinition definition;
    definition.m_objectFlags = query.flags;
    for (; !rows->atEnd(); rows->moveNext()) {
        if (value("ObjectId").toInt() != query.id)
            continue;
        definition.m_rows.append({value("Attribute").toInt(), rows->bytes(field.value("Order", -1)),
                                  value("Name1").toString(), value("Name2").toString(),
                                  value("Expression").toString(), value("Flag").toInt()});
    }
    if (!rows->readError().isEmpty()) {
        *error = rows->readError();
        return std::nullopt;
    }
    std::stable_sort(
        definition.m_rows.begin(), definition.m_rows.end(), [](const Row& a, const Row& b) {
            return a.attribute != b.attribute ? a.attribute < b.attribute : a.order < b.order;
        });
    return definition;
}

JetQueryDefinition::Kind JetQueryDefinition::kind() const
{
    const QList<Row> type = rowsOf(TypeRow);
    if (!type.isEmpty()) {
        if (type[0].flag == SelectType)
            return Kind::Select;
        if (type[0].flag == CrosstabType)
            return Kind::Crosstab;
        return type[0].flag == UnionType ? Kind::Union : Kind::Action;
    }
    switch (m_objectFlags & JetObject::QueryKindBits) {
    case 0:
        return Kind::Select;
    case JetObject::CrosstabQueryFlag:
        return Kind::Crosstab;
    case JetObject::UnionQueryFlag:
        return Kind::Union;
    default:
        return Kind::Action;
    }
}

QList<JetQueryDefinition::Row> JetQueryDefinition::rowsOf(Attribute attribute) const
{
    QList<Row> rows;
    for (const Row& row : m_rows) {
        if (row.attribute == attribute)
            rows.append(row);
    }
    return rows;
}

} // namespace tabulor
