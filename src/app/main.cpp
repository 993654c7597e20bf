#include "app/CommandLine.h"

#include <QCoreApplication>

using namespace tabulor::cli;

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tabulor"));

    QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2)
        return usageError(QStringLiteral("no command given"));
    const QString command = arguments.at(1);
    if (command == u"--help" || command == u"-h" || command == u"help") {
        printOut(usageText());
        return kExitOk;
    }
    // Each command parses its own options; it sees the program name and what follows it.
    arguments.removeAt(1);
    if (command == u"info")
        return runInfo(arguments);
    if (command == u"new")
        return runNew(arguments);
    if (command == u"save")
        return runSave(arguments);
    if (command == u"sources")
        return runSources(arguments);
    return usageError(QStringLiteral("unknown command '%1'").arg(command));
}
