#pragma once

#include "commands/ActionState.h"

#include <QString>

#include <optional>

namespace tabulor {

class StringTable;

// What the status line tells of the report.
struct StatusFacts
{
    QString databaseName; // the file name of the open database; empty when none is open
    QString recordSource;
    DesignerView view = DesignerView::Design;
    qint64 rowsLoaded = 0;
    qint64 recordsCounted = 0;
    std::optional<int> pageCount; // of the document on show in the preview, when there is one
};

// The status line: text itself when it is not empty (a progress text), "No Report" without a
// database, else "Report [source] from [database]" followed by the records in the design view
// or the pages in the preview, in the string table's words.
QString statusLine(const StringTable& strings, const QString& text, const StatusFacts& facts);

// The window's caption: the application's title, and the report file's path after it when
// there is one.
QString windowCaption(const QString& applicationTitle, const QString& reportPath);

} // namespace tabulor
