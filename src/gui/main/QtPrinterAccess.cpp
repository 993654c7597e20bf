#include "gui/main/QtPrinterAccess.h"

#include "printing/PrinterOutput.h"
#include "production/pages/PageSetup.h"

#include <QPageLayout>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>

#include <cmath>

namespace tabulor {

namespace {

constexpr double kTwipsPerPoint = 20;

} // namespace

QtPrinterAccess::QtPrinterAccess(QWidget* parent)
    : m_parent(parent), m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
}

QtPrinterAccess::~QtPrinterAccess() = default;

QString QtPrinterAccess::deviceName() const
{
    return m_printer->printerName();
}

bool QtPrinterAccess::print(const PageDocument& document, QString* error)
{
    return PrintDoc(document, m_printer->printerName(), error);
}

bool QtPrinterAccess::setup(int index, PageSetup& page)
{
    // The dialogs start from the report's page, in points.
    const QMarginsF margins(page.marginLeft / kTwipsPerPoint, page.marginTop / kTwipsPerPoint,
                            page.marginRight / kTwipsPerPoint, page.marginBottom / kTwipsPerPoint);
    m_printer->setPageLayout(QPageLayout(
        QPageSize(page.paper / kTwipsPerPoint, QPageSize::Point, QString(), QPageSize::FuzzyMatch),
        page.orientation == 1 ? QPageLayout::Landscape : QPageLayout::Portrait, margins,
        QPageLayout::Point));
    int result = QDialog::Rejected;
    if (index == 0) {
        QPrintDialog dialog(m_printer.get(), m_parent);
        dialog.setObjectName(QStringLiteral("printerSetup"));
        result = dialog.exec();
    } else {
        QPageSetupDialog dialog(m_printer.get(), m_parent);
        dialog.setObjectName(QStringLiteral("pageSetup"));
        result = dialog.exec();
    }
    if (result != QDialog::Accepted)
        return false;
    const QPageLayout layout = m_printer->pageLayout();
    const QMarginsF chosen = layout.margins(QPageLayout::Point);
    page.orientation = layout.orientation() == QPageLayout::Landscape ? 1 : 0;
    page.marginLeft = static_cast<qint32>(std::lround(chosen.left() * kTwipsPerPoint));
    page.marginTop = static_cast<qint32>(std::lround(chosen.top() * kTwipsPerPoint));
    page.marginRight = static_cast<qint32>(std::lround(chosen.right() * kTwipsPerPoint));
    page.marginBottom = static_cast<qint32>(std::lround(chosen.bottom() * kTwipsPerPoint));
    page.paper = layout.pageSize().size(QPageSize::Point) * kTwipsPerPoint;
    return true;
}

} // namespace tabulor
