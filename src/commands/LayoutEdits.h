#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tabulor {

class ReportSession;

// The three lists of the layout window: the record source's fields not yet placed, the
// grouping fields (outermost first) and the detail columns (left to right).
enum class LayoutList
{
    Fields = 0,
    Groups = 1,
    Details = 2,
};

// What the layout window does to a report, without the window: the lists it shows, as the
// session's definition and data give them, and the moves of fields between them. A field
// stands in exactly one list. Every move that changes the report goes through the session,
// so that it can be undone; a move that changes nothing leaves the report unchanged and
// unmarked.
class LayoutEdits
{
public:
    explicit LayoutEdits(ReportSession& session) : m_session(session) {}

    ReportSession& session() { return m_session; }
    const QStringList& fields(LayoutList list) const;

    // Whether a database is open, so that its record sources can be offered.
    bool databaseOpen() const;
    // The database's record sources, tables then queries, and the current one (-1: none).
    QStringList recordSources() const;
    int currentRecordSource() const;
    // The user chose a record source: it is opened with every field unplaced. Choosing the
    // current one again does nothing.
    void chooseRecordSource(const QString& name);

    // Drops the field at index of one list at position of another (or the same) list: the
    // position is clamped to the list; a field dropped back on the fields is appended to
    // them, and the fields are never reordered. Returns where the field now stands in `to`,
    // or nothing when nothing changed (no such field, or it ends where it was).
    std::optional<int> moveField(LayoutList from, int index, LayoutList to, int position);
    // The keyboard's forms of the same move: to the end of another list, or one place up
    // (step -1) or down (+1) within the groups or details.
    std::optional<int> sendField(LayoutList from, int index, LayoutList to);
    std::optional<int> shiftField(LayoutList list, int index, int step);

private:
    ReportSession& m_session;
};

} // namespace tabulor
