#include "app/CommandLine.h"
#include "app/PrintCommand.h"

#include "component/ReportSession.h"
#include "production/pages/BackgroundPageSink.h"
#include "production/pages/PageOutput.h"
#include "production/pdf/PdfPageSink.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <cstdio>
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
    parser.addOptions({output, database, dpi, pages, printer, painterPdf});
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
    int last = std::numeric_limits<int>::max();
    if (!pageRange(parser.value(pages), &first, &last))
        return usageError(QStringLiteral("--pages takes a page or a range such as 2-5"));

    std::optional<QString> newDatabase;
    if (parser.isSet(database))
        newDatabase = databaseArgument(parser.value(database));

    // An empty printer name stands for the default printer.
    if (parser.isSet(printer) && !printerReady(parser.value(printer)))
        return kExitFailed;

    ReportSession session;
    const QString path = parser.positionalArguments().constFirst();
    if (!loadDefinition(session, path, newDatabase))
        return kExitFailed;
    session.definition().CurrentFileName = path;

    // Progress on a terminal only, so that scripts see nothing but what goes wrong.
    if (isatty(fileno(stderr))) {
        QObject::connect(&session, &ReportSession::statusChanged, [](const QString& text) {
            if (text.startsWith(QStringLiteral("Generating page")) || text.isEmpty())
                std::fprintf(stderr, "\r%-40s%s", text.toUtf8().constData(),
                             text.isEmpty() ? "\r" : "");
        });
    }

    PageDocument document;
    document.OverlayHeadersAndFooters = true;
    QString error;
    bool written = false;
    if (parser.isSet(output) && !png && !parser.isSet(painterPdf) && !parser.isSet(printer)) {
        // Pages go to the file as soon as they are laid out.
        PdfWriter writer;
        if (!writer.open(target, &error)) {
            printError(QStringLiteral("tabulor: cannot write '%1': %2").arg(target, error));
            return kExitFailed;
        }
        writer.begin(QFileInfo(path).fileName());
        PdfPageSink sink(writer);
        BackgroundPageSink background(sink);
        document.setSink(&background);
        session.renderFullReport(document);
        background.finish();
        if (document.stopped())
            return kExitFailed;
        written = sink.error().isEmpty() ? writer.finish(&error) : false;
        if (!sink.error().isEmpty())
            error = sink.error();
    } else {
        session.renderFullReport(document);
        if (document.stopped())
            return kExitFailed;
        if (!parser.isSet(output))
            return printReport(document, parser.value(printer));
        written = png ? writePng(document.pages(), target, dotsPerInch, first, last,
                                 document.fonts(), &error)
                      : writePainterPdf(document.pages(), target, QFileInfo(path).fileName(),
                                        document.fonts(), &error);
    }
    if (!written) {
        printError(QStringLiteral("tabulor: cannot write '%1': %2").arg(target, error));
        return kExitFailed;
    }
    return parser.isSet(printer) ? printReport(document, parser.value(printer)) : kExitOk;
}

} // namespace tabulor::cli
