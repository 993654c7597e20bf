#pragma once

#include "production/base/Export.h"

#include <QString>

namespace tabulor {

class PageDocument;
class PageSink;

// Where the pages of a finished report go: a PDF, image files, a printer. An output either
// takes each page as soon as it is laid out (when it is the report's only output and can take
// pages so), or is handed the document's pages once the document is complete.
class TABULOR_EXPORT ReportOutput
{
public:
    virtual ~ReportOutput() = default;

    // Before the report is laid out: fails early on what would fail at the end (a file that
    // cannot be written, a printer that is not there).
    [[nodiscard]] virtual bool start(QString* error) = 0;
    // The sink that takes the pages as they are laid out, or null when the output wants the
    // complete document. Asked at most once, after start(), when this is the only output.
    virtual PageSink* streamingSink() { return nullptr; }
    // Once the document is complete: writes what was streamed, or the document's pages.
    [[nodiscard]] virtual bool finish(const PageDocument& document, QString* error) = 0;
    // The report stopped: nothing is left behind, and a file that was there stays as it was.
    virtual void discard() {}
};

// How an output that writes files says it could not: "cannot write 'PATH': REASON".
inline QString cannotWrite(const QString& path, const QString& reason)
{
    return QStringLiteral("cannot write '%1': %2").arg(path, reason);
}

} // namespace tabulor
