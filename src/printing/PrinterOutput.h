#pragma once

#include <QString>

namespace tabulor {

class PageDocument;

// The printer that name stands for on the print server (CUPS, or the one CUPS_SERVER names):
// the name itself when the server has such a printer, its default printer for an empty name.
// Empty, with the reason in error, when there is no such printer, no default one or no print
// server.
QString findPrinter(const QString& name, QString* error);

// Sends the pages of a document to the printer that the document names (printerName), or to
// the default printer when it names none, as one job titled with the document's file name.
// Each page keeps its size and orientation. False, with the reason in error, when the printer
// cannot be found or the job could not be handed over.
[[nodiscard]] bool PrintDoc(const PageDocument& document, QString* error);

} // namespace tabulor
