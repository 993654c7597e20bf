#include "app/CommandLine.h"

#include "component/ReportSession.h"
#include "production/databases/OpenDatabase.h"

#include <QCommandLineParser>

namespace tabulor::cli {

int runSave(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption output(QStringList{QStringLiteral("o"), QStringLiteral("output")},
                                    QString(), QStringLiteral("OUT.vrd"));
    const QCommandLineOption database(QStringLiteral("database"), QString(),
                                      QStringLiteral("PATH"));
    parser.addOption(output);
    parser.addOption(database);
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1 || !parser.isSet(output))
        return usageError(QStringLiteral("save takes one definition file and -o OUT.vrd"));

    std::optional<QString> newDatabase;
    if (parser.isSet(database)) {
        newDatabase = databaseArgument(parser.value(database));
        QString error;
        if (!openDatabase(*newDatabase, &error)) {
            printError(QStringLiteral("tabulor: cannot open the database '%1': %2")
                           .arg(parser.value(database), error));
            return kExitFailed;
        }
    }

    ReportSession session;
    if (!loadDefinition(session, parser.positionalArguments().constFirst(), newDatabase))
        return kExitFailed;
    return session.saveReportFile(parser.value(output)) ? kExitOk : kExitFailed;
}

} // namespace tabulor::cli
