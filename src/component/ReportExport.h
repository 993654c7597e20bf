#pragma once

#include <QString>

#include <span>

namespace tabulor {

class PageDocument;
class ReportOutput;
class ReportSession;

// The one way a full report leaves the program, for the command line, the C interface, the
// designer's print command and a host alike: the report is laid out over every record into
// document and its pages go to each output. A single output that can take pages as they are
// laid out gets them at once (a long report then never sits in memory); otherwise the document
// keeps the pages and each output is handed them at the end. False, with the reason in error,
// when an output cannot start or finish, or the report stopped (the user has then been told
// why); every output that has not finished is then discarded, so no half-written file is left,
// and a file an output would have replaced stays as it was.
[[nodiscard]] bool exportReport(ReportSession& session, PageDocument& document,
                                std::span<ReportOutput* const> outputs, QString* error);

} // namespace tabulor
