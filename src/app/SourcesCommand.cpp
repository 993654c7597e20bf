#include "app/CommandLine.h"

#include "production/databases/OpenDatabase.h"

#include <QCommandLineParser>

namespace tabulor::cli {

int runSources(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption kind(QStringLiteral("kind"));
    parser.addOption(kind);
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1)
        return usageError(QStringLiteral("sources takes one database"));

    const QString name = parser.positionalArguments().constFirst();
    QString error;
    const auto database = openDatabase(name, &error);
    if (!database) {
        printError(QStringLiteral("tabulor: cannot open the database '%1': %2").arg(name, error));
        return kExitFailed;
    }
    QStringList lines;
    for (const RecordSourceEntry& entry : database->recordSources()) {
        lines << (parser.isSet(kind) ? recordSourceKindName(entry.kind) + u'\t' + entry.name
                                     : entry.name);
    }
    if (!lines.isEmpty())
        printOut(lines.join(u'\n'));
    return kExitOk;
}

} // namespace tabulor::cli
