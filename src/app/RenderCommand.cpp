#include "app/CommandLine.h"

#include "component/ReportExport.h"
#include "component/ReportSession.h"
#include "printing/PrinterOutput.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PainterPdfOutput.h"
#include "production/pages/PngOutput.h"
#include "production/pdf/PdfFileOutput.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <cstdio>
#include <numeric>
#include <unistd.h>

namespace tabulor::cli {

namespace {

// "3" or "2-5": the pages to write as images; all of them when not given.
bool pageRange(const QString& text, int* first, int* last)
{
    if (text.isEmpty())
        return true;
    const QStringList ends = text.split(u'-');
    bool okFirst = false;
    bool okLast = false;
    *first = ends.first().toInt(&okFirst);
    *last = ends.size() == 2 ? ends.last().toInt(&okLast) : *first;
    return okFirst && (ends.size() == 1 || okLast) && ends.size() <= 2 && *first >= 1 &&
           *last >= *first;
}

// Columns wider than the page run off its right edge; the user is told how to fit them.
void warnOfColumnsTooWide(const ReportSession& session, const PageDocument& document,
                          const QString& title)
{
    const std::vector<double> widths = session.columnWidths(document.fonts());
    const double total = std::accumulate(widths.begin(), widths.end(), 0.0);
    const double printable = session.printableWidth(document.setup());
    if (total <= printable)
        return;
    constexpr double kTwipsPerInch = 1440;
    printError(QStringLiteral("tabulor: warning: %1: the columns are %2 inches wide and the page "
                              "prints %3 inches across; --fit narrows them to the page")
                   .arg(title)
                   .arg(total / kTwipsPerInch, 0, 'f', 2)
                   .arg(printable / kTwipsPerInch, 0, 'f', 2));
}

} // namespace

int runRender(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption output(QStringList{QStringLiteral("o"), QStringLiteral("output")},
                                    QString(), QStringLiteral("OUT"));
    const QCommandLineOption database(QStringLiteral("database"), QString(),
                                      QStringLiteral("PATH"));
    const QCommandLineOption dpi(QStringLiteral("dpi"), QString(), QStringLiteral("N"),
                                 QStringLiteral("150"));
    const QCommandLineOption pages(QStringLiteral("pages"), QString(), QStringLiteral("A-B"));
    const QCommandLineOption printer(QStringLiteral("printer"), QString(), QStringLiteral("NAME"));
    // The PDF drawn through Qt's painter instead of the direct writer, for comparison.
    const QCommandLineOption painterPdf(QStringLiteral("qt-pdf"));
    const QCommandLineOption fit(QStringLiteral("fit"));
    parser.addOptions({output, database, dpi, pages, printer, painterPdf, fit});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1 ||
        !(parser.isSet(output) || parser.isSet(printer)))
        return usageError(
            QStringLiteral("render takes one definition file and -o OUT or --printer NAME"));
    const QString target = parser.value(output);
    const bool png = target.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive);
    if (parser.isSet(output) && !png &&
        !target.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        return usageError(QStringLiteral("-o names a .pdf file or .png images"));
    bool dpiOk = false;
    const int dotsPerInch = parser.value(dpi).toInt(&dpiOk);
    if (!dpiOk || dotsPerInch < 10 || dotsPerInch > 1200)
        return usageError(QStringLiteral("--dpi takes a resolution from 10 to 1200"));
    int first = 1;
    int last = PngOutput::kLastPage;
    if (!pageRange(parser.value(pages), &first, &last))
        return usageError(QStringLiteral("--pages takes a page or a range such as 2-5"));

    std::optional<QString> newDatabase;
    if (parser.isSet(database))
        newDatabase = databaseArgument(parser.value(database));

    // Each output is checked before anything else happens: a printer that is not there, or
    // a file that cannot be written, fails at once.
    const QString path = parser.positionalArguments().constFirst();
    const QString title = QFileInfo(path).fileName();
    std::vector<std::unique_ptr<ReportOutput>> outputs;
    if (parser.isSet(output)) {
        if (png)
            outputs.push_back(std::make_unique<PngOutput>(target, dotsPerInch, first, last));
        else if (parser.isSet(painterPdf))
            outputs.push_back(std::make_unique<PainterPdfOutput>(target, title));
        else
            outputs.push_back(std::make_unique<PdfFileOutput>(target, title));
    }
    PrinterOutput* printerOutput = nullptr;
    if (parser.isSet(printer)) {
        auto onPrinter = std::make_unique<PrinterOutput>(parser.value(printer));
        printerOutput = onPrinter.get();
        outputs.push_back(std::move(onPrinter));
    }

    ReportSession session;
    // A report without its record source or some of its fields is not produced: the file at
    // -o stays as it was.
    if (!loadDefinition(session, path, newDatabase) ||
        printMissingObjects(session, path, /*asWarnings=*/false))
        return kExitFailed;
    session.definition().CurrentFileName = path;

    PageDocument document;
    if (parser.isSet(fit))
        session.fitColumns(document.setup(), document.fonts());
    else
        warnOfColumnsTooWide(session, document, title);

    QObject::connect(&session, &ReportSession::renderWarning, [&title](const QString& text) {
        printError(QStringLiteral("tabulor: warning: %1: %2").arg(title, text));
    });
    // Progress on a terminal only, so that scripts see nothing but what goes wrong.
    if (isatty(fileno(stderr))) {
        QObject::connect(&session, &ReportSession::pageStarted, [&session](int page) {
            const QString text = session.strings().text(Message::GENERATINGPAGE) + u' ' +
                                 QString::number(page) + QStringLiteral("...");
            std::fprintf(stderr, "\r%-40s", text.toUtf8().constData());
        });
        QObject::connect(&session, &ReportSession::reportFinished,
                         [] { std::fprintf(stderr, "\r%-40s\r", ""); });
    }

    document.OverlayHeadersAndFooters = true;
    QString error;
    std::vector<ReportOutput*> targets;
    for (const auto& o : outputs)
        targets.push_back(o.get());
    if (!exportReport(session, document, targets, &error)) {
        if (!document.stopped())
            printError(QStringLiteral("tabulor: ") + error);
        // Pages beyond the report's end are a wrong argument, known only now.
        const bool pagesBeyondEnd = png && last != PngOutput::kLastPage &&
                                    last > document.PageCount() && !document.stopped();
        return pagesBeyondEnd ? kExitUsage : kExitFailed;
    }
    if (printerOutput)
        printOut(QStringLiteral("%1: %2 page(s) sent to %3")
                     .arg(title)
                     .arg(document.PageCount())
                     .arg(printerOutput->printerName()));
    return kExitOk;
}

} // namespace tabulor::cli
