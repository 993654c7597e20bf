#include "production/data/DataSource.h"

namespace tabulor {

QString recordSourceKindName(RecordSourceKind kind)
{
    switch (kind) {
    case RecordSourceKind::Table:
        return QStringLiteral("table");
    case RecordSourceKind::Linked:
        return QStringLiteral("linked");
    case RecordSourceKind::View:
        return QStringLiteral("view");
    case RecordSourceKind::Query:
        return QStringLiteral("query");
    }
    return {};
}

QString matchingRecordSourceName(const QList<RecordSourceEntry>& sources, const QString& name)
{
    QString match;
    int matches = 0;
    for (const RecordSourceEntry& source : sources) {
        if (source.name == name)
            return name;
        if (source.name.compare(name, Qt::CaseInsensitive) == 0) {
            match = source.name;
            ++matches;
        }
    }
    return matches == 1 ? match : QString();
}

std::unique_ptr<Recordset> DataSource::openSorted(const QString&, const QList<SortField>&,
                                                  const QCollator&, QString*)
{
    return nullptr;
}

} // namespace tabulor
