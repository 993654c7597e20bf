#pragma once

#include <QStringList>

namespace tabulor {

class ReportSession;

// What a loaded definition names that its data does not have: a record source that cannot be
// opened, or a field of the Groups or Details list that the record source lacks. Each entry is
// a message for the user that names the source or field; none when the report can be produced
// as it was designed. The designer shows such a report empty or without those fields; the
// command line refuses to produce it.
QStringList missingObjects(const ReportSession& session);

} // namespace tabulor
