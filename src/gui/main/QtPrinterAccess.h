#pragma once

#include "commands/PrinterAccess.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class QPrinter;

namespace tabulor {

// The printer of the designer: the print server's default printer until the user picks
// another in the printer setup dialog (QPrintDialog), whose page setup dialog
// (QPageSetupDialog) sets the orientation and margins.
class QtPrinterAccess : public PrinterAccess
{
public:
    explicit QtPrinterAccess(QWidget* parent);
    ~QtPrinterAccess() override;

    QString deviceName() const override;
    [[nodiscard]] bool print(const PageDocument& document, QString* error) override;
    [[nodiscard]] bool setup(int index, PageSetup& page) override;

private:
    QPointer<QWidget> m_parent;
    std::unique_ptr<QPrinter> m_printer;
};

} // namespace tabulor
