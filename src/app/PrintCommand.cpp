#include "app/PrintCommand.h"
#include "app/CommandLine.h"

#include "printing/PrinterOutput.h"
#include "production/pages/PageDocument.h"

#include <QCommandLineParser>

namespace tabulor::cli {

bool printerReady(const QString& printer)
{
    QString error;
    if (!findPrinter(printer, &error).isEmpty())
        return true;
    printError(QStringLiteral("tabulor: cannot print: ") + error);
    return false;
}

int printReport(PageDocument& document, const QString& printer)
{
    QString error;
    document.printerName = findPrinter(printer, &error);
    if (document.printerName.isEmpty() || !PrintDoc(document, &error)) {
        printError(QStringLiteral("tabulor: cannot print: ") + error);
        return kExitFailed;
    }
    printOut(QStringLiteral("%1: %2 page(s) sent to %3")
                 .arg(document.FileName)
                 .arg(document.PageCount())
                 .arg(document.printerName));
    return kExitOk;
}

// Printing is rendering with the printer as the output.
int runPrint(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption printer(QStringList{QStringLiteral("P"), QStringLiteral("printer")},
                                     QString(), QStringLiteral("NAME"));
    const QCommandLineOption database(QStringLiteral("database"), QString(),
                                      QStringLiteral("PATH"));
    parser.addOptions({printer, database});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1)
        return usageError(QStringLiteral("print takes one definition file"));
    if (parser.isSet(printer) && parser.value(printer).isEmpty())
        return usageError(QStringLiteral("-P takes the name of a printer"));

    QStringList render{arguments.constFirst(), parser.positionalArguments().constFirst(),
                       QStringLiteral("--printer"), parser.value(printer)};
    if (parser.isSet(database))
        render << QStringLiteral("--database") << parser.value(database);
    return runRender(render);
}

} // namespace tabulor::cli
