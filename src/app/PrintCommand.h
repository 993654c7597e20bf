#pragma once

#include <QString>

namespace tabulor {

class PageDocument;

namespace cli {

// Whether the printer (the default one for an empty name) can take a job; when not, the user
// is told why. Checked before a report is rendered for it.
bool printerReady(const QString& printer);

// Sends a rendered report to the printer; returns the exit status, having told the user what
// became of the job.
int printReport(PageDocument& document, const QString& printer);

} // namespace cli
} // namespace tabulor
