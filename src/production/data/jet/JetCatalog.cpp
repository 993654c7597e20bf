#include "production/data/jet/JetCatalog.h"

#include "production/data/jet/JetHandle.h"
#include "production/data/jet/JetRecordset.h"

namespace tabulor {

namespace {

// MSysObjects.Type of the objects that can be record sources.
constexpr int LocalTableType = 1;
constexpr int OdbcLinkType = 4;
constexpr int QueryType = 5;
constexpr int FileLinkType = 6;

constexpr quint32 SystemFlags = 0x80000002u;
constexpr quint32 HiddenFlag = 0x8u;
constexpr quint32 SystemAttribute = 0x80000002u;
constexpr quint32 HiddenAttribute = 0x1u;

bool isEmbeddedSource(const QString& name)
{
    return name.startsWith(QLatin1String("~sq_"), Qt::CaseSensitive);
}

std::optional<JetObject::Kind> kindForType(int type)
{
    switch (type) {
    case LocalTableType:
        return JetObject::Kind::Table;
    case OdbcLinkType:
        return JetObject::Kind::LinkedOdbc;
    case FileLinkType:
        return JetObject::Kind::LinkedFile;
    case QueryType:
        return JetObject::Kind::Query;
    default:
        return std::nullopt;
    }
}

} // namespace

quint32 JetObject::attributes() const
{
    return (flags & SystemFlags ? SystemAttribute : 0) | (flags & HiddenFlag ? HiddenAttribute : 0);
}

bool JetObject::isActionQuery() const
{
    const quint32 queryKind = flags & QueryKindBits;
    return kind == Kind::Query && queryKind != 0 && queryKind != CrosstabQueryFlag &&
           queryKind != UnionQueryFlag;
}

std::optional<JetCatalog> JetCatalog::read(const JetHandle& database, QString* error)
{
    const int index = database.findTable(QStringLiteral("MSysObjects"));
    std::unique_ptr<JetRecordset> rows;
    if (index >= 0)
        rows = JetRecordset::open(database, index, std::nullopt, error);
    else if (error)
        *error = database.damaged(QStringLiteral("it has no object table"));
    if (!rows)
        return std::nullopt;

    QHash<QString, int> field;
    for (int i = 0; i < rows->fieldCount(); ++i)
        field.insert(rows->fieldName(i), i);
    const auto text = [&](const char* name) {
        return rows->value(field.value(name, -1)).toString();
    };
    JetCatalog catalog;
    for (; !rows->atEnd(); rows->moveNext()) {
        const std::optional<JetObject::Kind> kind =
            kindForType(rows->value(field.value("Type", -1)).toInt());
        if (!kind)
            continue;
        JetObject object;
        object.id = rows->value(field.value("Id", -1)).toInt();
        object.name = text("Name");
        object.kind = *kind;
        object.flags = quint32(rows->value(field.value("Flags", -1)).toLongLong());
        object.database = text("Database");
        object.connect = text("Connect");
        object.foreignName = text("ForeignName");
        catalog.m_objects.append(object);
    }
    if (!rows->readError().isEmpty()) {
        if (error)
            *error = rows->readError();
        return std::nullopt;
    }
    return catalog;
}

QList<RecordSourceEntry> JetCatalog::recordSources() const
{
    QList<RecordSourceEntry> tables;
    QList<RecordSourceEntry> queries;
    for (const JetObject& object : m_objects) {
        if (isEmbeddedSource(object.name))
            continue;
        switch (object.kind) {
        case JetObject::Kind::Query:
            // Opening an action query says why it gives no rows; the list leaves it out.
            if (!object.isActionQuery())
                queries.append({object.name, RecordSourceKind::Query});
            break;
        case JetObject::Kind::Table:
        case JetObject::Kind::LinkedFile:
        case JetObject::Kind::LinkedOdbc:
            if ((object.attributes() & (SystemAttribute | HiddenAttribute)) == 0)
                tables.append({object.name, object.kind == JetObject::Kind::Table
                                                ? RecordSourceKind::Table
                                                : RecordSourceKind::Linked});
            break;
        }
    }
    return tables + queries;
}

const JetObject* JetCatalog::find(const QString& name) const
{
    const JetObject* sameButCase = nullptr;
    for (const JetObject& object : m_objects) {
        if (object.name == name)
            return &object;
        if (!sameButCase && object.name.compare(name, Qt::CaseInsensitive) == 0)
            sameButCase = &object;
    }
    return sameButCase;
}

} // namespace tabulor
