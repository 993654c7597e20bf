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

std::unique_ptr<Recordset> DataSource::openSorted(const QString&, const QList<SortField>&,
                                                  const QCollator&, QString*)
{
    return nullptr;
}

} // namespace tabulor
