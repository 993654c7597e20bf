#include "printing/PrinterOutput.h"

#include "production/pages/PageDocument.h"
#include "production/pages/PagePainter.h"

#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <cups/cups.h>

namespace tabulor {

namespace {

// Where the print server is looked for: a socket path, or host and port.
QString serverAddress()
{
    const QString server = QString::fromUtf8(cupsServer());
    return server.startsWith(u'/') ? server : QStringLiteral("%1:%2").arg(server).arg(ippPort());
}

bool serverAnswers()
{
    http_t* connection = httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(),
                                      1, 5000, nullptr);
    if (!connection)
        return false;
    httpClose(connection);
    return true;
}

// A page's size as the printer takes it: the paper upright, turned for a landscape page.
// Standard sizes are recognised, so that the printer is asked for its own paper.
QPageLayout layoutOf(const PageDisplayList& page)
{
    const QSizeF points = page.size / 20.0;
    const bool landscape = points.width() > points.height();
    return QPageLayout(QPageSize(landscape ? points.transposed() : points, QPageSize::Point,
                                 QString(), QPageSize::FuzzyMatch),
                       landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
}

} // namespace

QString findPrinter(const QString& name, QString* error)
{
    if (!serverAnswers()) {
        *error = QStringLiteral("no print server answers at %1; start CUPS, or set CUPS_SERVER "
                                "to a server that runs")
                     .arg(serverAddress());
        return {};
    }
    const QStringList names = QPrinterInfo::availablePrinterNames();
    if (names.isEmpty()) {
        *error = QStringLiteral("the print server at %1 has no printers").arg(serverAddress());
        return {};
    }
    if (name.isEmpty()) {
        const QString fallback = QPrinterInfo::defaultPrinterName();
        if (fallback.isEmpty()) {
            *error = QStringLiteral("the print server at %1 has no default printer; name one "
                                    "of: %2")
                         .arg(serverAddress(), names.join(QStringLiteral(", ")));
        }
        return fallback;
    }
    // The print server does not tell printer names apart by case.
    for (const QString& known : names) {
        if (known.compare(name, Qt::CaseInsensitive) == 0)
            return known;
    }
    *error = QStringLiteral("there is no printer '%1' on the print server at %2; it has: %3")
                 .arg(name, serverAddress(), names.join(QStringLiteral(", ")));
    return {};
}

bool PrintDoc(const PageDocument& document, const QString& printerName, QString* error)
{
    const std::vector<PageDisplayList>& pages = document.pages();
    if (pages.empty()) {
        *error = QStringLiteral("the document has no pages to print");
        return false;
    }
    const QString name = findPrinter(printerName, error);
    if (name.isEmpty())
        return false;

    QPrinter printer(QPrinterInfo::printerInfo(name), QPrinter::HighResolution);
    if (printer.outputFormat() != QPrinter::NativeFormat || printer.printerName() != name) {
        *error = QStringLiteral("Qt's printer support does not reach printer '%1' (its CUPS "
                                "plugin may be missing)")
                     .arg(name);
        return false;
    }
    printer.setDocName(document.FileName.isEmpty() ? QStringLiteral("Tabulor report")
                                                   : document.FileName);
    printer.setCreator(QStringLiteral("Tabulor"));
    // Display lists are measured from the corner of the paper.
    printer.setFullPage(true);
    printer.setPageLayout(layoutOf(pages.front()));

    QPainter painter;
    if (!painter.begin(&printer)) {
        *error = QStringLiteral("printer '%1' could not be started").arg(name);
        return false;
    }
    for (size_t i = 0; i < pages.size(); ++i) {
        if (i > 0) {
            printer.setPageLayout(layoutOf(pages[i]));
            printer.newPage();
        }
        painter.save();
        useTwips(painter, printer.resolution());
        paintPage(painter, pages[i], document.fonts());
        painter.restore();
    }
    if (!painter.end()) {
        *error = QStringLiteral("the job for printer '%1' could not be finished").arg(name);
        return false;
    }
    // Qt hands the job to CUPS as the painter ends and keeps the answer to itself; the answer
    // is read back from the CUPS library, which this thread shares with Qt.
    if (cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE) {
        *error = QStringLiteral("printer '%1' did not take the job: %2")
                     .arg(name, QString::fromUtf8(cupsLastErrorString()));
        return false;
    }
    return true;
}

bool PrinterOutput::start(QString* error)
{
    QString reason;
    const QString found = findPrinter(m_printer, &reason);
    if (found.isEmpty()) {
        *error = QStringLiteral("cannot print: ") + reason;
        return false;
    }
    m_printer = found;
    return true;
}

bool PrinterOutput::finish(const PageDocument& document, QString* error)
{
    QString reason;
    if (PrintDoc(document, m_printer, &reason))
        return true;
    *error = QStringLiteral("cannot print: ") + reason;
    return false;
}

} // namespace tabulor
