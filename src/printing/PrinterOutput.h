#pragma once

#include "production/base/Export.h"
#include "production/pages/ReportOutput.h"

#include <QString>

namespace tabulor {

class PageDocument;

// The printer that name stands for on the print server (CUPS, or the one CUPS_SERVER names):
// the name itself when the server has such a printer, its default printer for an empty name.
// Empty, with the reason in error, when there is no such printer, no default one or no print
// server.
TABULOR_EXPORT QString findPrinter(const QString& name, QString* error);

// Sends the pages of a document to a printer (the default one for an empty name) as one job
// titled with the document's file name. Each page keeps its size and orientation. False, with
// the reason in error, when the printer cannot be found or the job could not be handed over.
[[nodiscard]] TABULOR_EXPORT bool PrintDoc(const PageDocument& document, const QString& printerName,
                                           QString* error);

// A report on a printer: the printer is looked for before the report is laid out, and the
// whole document goes to it as one job.
class TABULOR_EXPORT PrinterOutput : public ReportOutput
{
public:
    // An empty name stands for the default printer.
    explicit PrinterOutput(QString printer) : m_printer(std::move(printer)) {}

    [[nodiscard]] bool start(QString* error) override;
    [[nodiscard]] bool finish(const PageDocument& document, QString* error) override;
    // The printer the job went to (once started).
    const QString& printerName() const { return m_printer; }

private:
    QString m_printer;
};

} // namespace tabulor
