#pragma once

#include <QString>

namespace tabulor {

class PageDocument;
struct PageSetup;

// What the designer's commands need of a printer; the windows provide it with Qt's printer
// support and its dialogs, tests with a printer of their own.
class PrinterAccess
{
public:
    virtual ~PrinterAccess() = default;

    // The printer the next job goes to, as the print question names it.
    virtual QString deviceName() const = 0;
    // Prints the document's pages; false with the reason. May be called on another thread
    // than the windows'.
    [[nodiscard]] virtual bool print(const PageDocument& document, QString* error) = 0;
    // The printer setup (index 0) or page setup (index 1) dialog, started from page's
    // orientation and margins; true when the user accepted, page then holds the choice.
    [[nodiscard]] virtual bool setup(int index, PageSetup& page) = 0;
};

} // namespace tabulor
