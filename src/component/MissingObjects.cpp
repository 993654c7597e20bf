#include "component/MissingObjects.h"

#include "component/ReportSession.h"

namespace tabulor {

namespace {

QStringList sourceFields(const OutlineGrid& grid)
{
    QStringList names;
    for (int c = 0; c < grid.columnCount(); ++c)
        names.append(grid.column(c).title);
    return names;
}

void addMissingFields(const QStringList& listed, const QString& list, const QString& source,
                      const QStringList& fields, QStringList& messages)
{
    for (const QString& name : listed) {
        if (!fields.contains(name)) {
            messages.append(QStringLiteral("%1 names the field '%2', which the record source "
                                           "'%3' does not have")
                                .arg(list, name, source));
        }
    }
}

} // namespace

QStringList missingObjects(const ReportSession& session)
{
    const ReportDefinition& definition = session.definition();
    const ReportData& data = session.data();
    if (!data.RecordSourceOpen()) {
        if (definition.RecordSource.isEmpty())
            return {QStringLiteral("the definition names no record source")};
        QString message = QStringLiteral("the record source '%1' cannot be opened in '%2'")
                              .arg(definition.RecordSource, definition.DataBaseName);
        if (!data.recordSourceError().isEmpty())
            message += QStringLiteral(": ") + data.recordSourceError();
        return {message};
    }
    QStringList messages;
    const QStringList fields = sourceFields(data.grid());
    addMissingFields(definition.groups, QStringLiteral("Groups"), definition.RecordSource, fields,
                     messages);
    addMissingFields(definition.details, QStringLiteral("Details"), definition.RecordSource, fields,
                     messages);
    return messages;
}

} // namespace tabulor
