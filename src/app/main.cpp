#include "app/CommandLine.h"

#include <QApplication>

using namespace tabulor::cli;

namespace {

// Qt's own notes (a missing runtime folder and the like) are no business of the user's; real
// failures reach the user as the command's own messages.
void quietQtMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg || type == QtCriticalMsg || qEnvironmentVariableIsSet("TABULOR_DEBUG"))
        printError(message);
}

} // namespace

int main(int argc, char* argv[])
{
    // Reports are laid out with the system's fonts, which takes a GUI application, and the
    // designer's windows a widget application; without a display it runs offscreen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        if (argc > 1 && qstrcmp(argv[1], "design") == 0) {
            printError(QStringLiteral("tabulor: the designer needs a display, and none was found "
                                      "(DISPLAY or WAYLAND_DISPLAY)"));
            return kExitFailed;
        }
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qInstallMessageHandler(quietQtMessages);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tabulor"));

    QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return usageError(QStringLiteral("no command given"));
    const QString command = arguments.at(1);
    if (command == u"--help" || command == u"-h" || command == u"help") {
        printOut(usageText());
        return kExitOk;
    }
    if (command == u"--version" || command == u"-V") {
        printOut(QStringLiteral("tabulor " TABULOR_VERSION_TEXT));
        return kExitOk;
    }
    // Each command parses its own options; it sees the program name and what follows it.
    arguments.removeAt(1);
    if (command == u"design")
        return runDesign(arguments);
    if (command == u"info")
        return runInfo(arguments);
    if (command == u"new")
        return runNew(arguments);
    if (command == u"print")
        return runPrint(arguments);
    if (command == u"render")
        return runRender(arguments);
    if (command == u"save")
        return runSave(arguments);
    if (command == u"sources")
        return runSources(arguments);
    return usageError(QStringLiteral("unknown command '%1'").arg(command));
}
