#include "app/CommandLine.h"

#include "component/Designer.h"
#include "component/Tabulor.h"

#include <QCommandLineParser>

namespace tabulor::cli {

// Opens the designer on a definition, or on nothing, and returns when the user closes it.
int runDesign(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption access(QStringLiteral("access"), QString(),
                                    QStringLiteral("use|modify|create"), QStringLiteral("create"));
    const QCommandLineOption noToolbar(QStringLiteral("no-toolbar"));
    const QCommandLineOption layout(QStringLiteral("layout"));
    parser.addOptions({access, noToolbar, layout});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() > 1)
        return usageError(QStringLiteral("design takes at most one definition file"));
    const QStringList modes = {QStringLiteral("use"), QStringLiteral("modify"),
                               QStringLiteral("create")};
    const qint32 mode = static_cast<qint32>(modes.indexOf(parser.value(access)));
    if (mode < 0)
        return usageError(QStringLiteral("--access takes use, modify or create"));
    Tabulor component;
    component.setAccessMode(mode);
    component.setAllowToolBar(!parser.isSet(noToolbar));
    component.setShowLayoutWindow(parser.isSet(layout));
    component.setShowTabulor(true);
    if (!component.Form()) {
        printError(QStringLiteral("tabulor: this build has no designer windows"));
        return kExitFailed;
    }
    // A definition that cannot be read has been told; the designer then starts empty.
    (void)component.DoReport(parser.positionalArguments().value(0));
    return kExitOk;
}

} // namespace tabulor::cli
