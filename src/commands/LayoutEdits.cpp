#include "commands/LayoutEdits.h"

#include "component/ReportSession.h"

#include <algorithm>
#include <array>

namespace tabulor {

const QStringList& LayoutEdits::fields(LayoutList list) const
{
    switch (list) {
    case LayoutList::Groups:
        return m_session.definition().groups;
    case LayoutList::Details:
        return m_session.definition().details;
    case LayoutList::Fields:
        break;
    }
    return m_session.data().availableFields();
}

bool LayoutEdits::databaseOpen() const
{
    return m_session.data().CurrentDatabase() != nullptr;
}

QStringList LayoutEdits::recordSources() const
{
    QStringList names;
    for (const RecordSourceEntry& entry : m_session.data().recordSources())
        names.append(entry.name);
    return names;
}

int LayoutEdits::currentRecordSource() const
{
    return m_session.data().selectedRecordSource();
}

void LayoutEdits::chooseRecordSource(const QString& name)
{
    m_session.selectRecordSource(name);
}

std::optional<int> LayoutEdits::moveField(LayoutList from, int index, LayoutList to, int position)
{
    const QStringList& source = fields(from);
    if (index < 0 || index >= source.size() || source.at(index).isEmpty())
        return std::nullopt;
    if (from == to && to == LayoutList::Fields)
        return std::nullopt;
    position = std::clamp(position, 0, int(fields(to).size()));
    if (from == to && position == index)
        return std::nullopt;

    // The lists as they will be, to tell a move that changes nothing (the last field dropped
    // below the end of its own list) from one that does.
    const std::array<QStringList, 3> before{fields(LayoutList::Fields), fields(LayoutList::Groups),
                                            fields(LayoutList::Details)};
    std::array<QStringList, 3> after = before;
    const QString name = after[size_t(from)].takeAt(index);
    QStringList& target = after[size_t(to)];
    const int placed =
        to == LayoutList::Fields ? int(target.size()) : std::min(position, int(target.size()));
    target.insert(placed, name);
    if (after == before)
        return std::nullopt;

    m_session.changeDefinition(QStringLiteral("Move %1").arg(name),
                               [&after](ReportDefinition& definition, QStringList& available) {
                                   available = after[size_t(LayoutList::Fields)];
                                   definition.groups = after[size_t(LayoutList::Groups)];
                                   definition.details = after[size_t(LayoutList::Details)];
                               });
    return placed;
}

std::optional<int> LayoutEdits::sendField(LayoutList from, int index, LayoutList to)
{
    if (from == to)
        return std::nullopt;
    return moveField(from, index, to, int(fields(to).size()));
}

std::optional<int> LayoutEdits::shiftField(LayoutList list, int index, int step)
{
    return moveField(list, index, list, index + step);
}

} // namespace tabulor
