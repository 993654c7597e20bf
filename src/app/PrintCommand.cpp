#include "app/CommandLine.h"

#include <QCommandLineParser>

namespace tabulor::cli {

// Printing is rendering with the printer as the output.
int runPrint(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption printer(QStringList{QStringLiteral("P"), QStringLiteral("printer")},
                                     QString(), QStringLiteral("NAME"));
    const QCommandLineOption database(QStringLiteral("database"), QString(),
                                      QStringLiteral("PATH"));
    const QCommandLineOption fit(QStringLiteral("fit"));
    parser.addOptions({printer, database, fit});
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
    if (parser.isSet(fit))
        render << QStringLiteral("--fit");
    return runRender(render);
}

} // namespace tabulor::cli
