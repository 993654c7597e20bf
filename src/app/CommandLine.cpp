#include "app/CommandLine.h"

#include "component/MissingObjects.h"
#include "component/ReportSession.h"

#include <QFileInfo>

#include <cstdio>

namespace tabulor::cli {

QString usageText()
{
    return QStringLiteral(
        "Usage:\n"
        "  tabulor design [FILE.vrd] [--access use|modify|create] [--no-toolbar] [--layout]\n"
        "      Opens the designer, on the definition if one is given. --access sets what the\n"
        "      user may do: use reports, also modify them, or also create them (the default).\n"
        "  tabulor info FILE.vrd [--json] [--rows N [--all]]\n"
        "      Loads a report definition and prints it; with --rows also the first N rows of\n"
        "      the report body, over the working view (250 records) or, with --all, over\n"
        "      every record.\n"
        "  tabulor new --database DB --source NAME [--group FIELD]... [--detail FIELD]...\n"
        "              [--sort FIELD=asc|desc|none]... [--total FIELD=sum|percent|count|avg|\n"
        "              max|min|stddev]... [--subtotals above|below|both] -o OUT.vrd\n"
        "      Makes a new definition as the designer would.\n"
        "  tabulor render FILE.vrd -o OUT.pdf [--database PATH] [--fit]\n"
        "  tabulor render FILE.vrd -o page-%d.png [--dpi N] [--pages A-B] [--database PATH]\n"
        "  tabulor render FILE.vrd --printer NAME [-o OUT] [--database PATH]\n"
        "      Produces the full report, every record, as a PDF or as page images, or sends\n"
        "      it to a printer. --fit narrows the columns to the page when they are wider.\n"
        "  tabulor print FILE.vrd [-P NAME] [--database PATH] [--fit]\n"
        "      Prints the full report on the printer NAME, or on the default printer. The\n"
        "      print server is CUPS, or the one CUPS_SERVER names.\n"
        "  tabulor save IN.vrd -o OUT.vrd [--database PATH]\n"
        "      Loads a definition and writes it back, optionally pointed at another database.\n"
        "  tabulor sources DATABASE [--kind]\n"
        "      Lists the tables, views and queries a report can use, one a line; with --kind\n"
        "      each line is the kind, a tab and the name.\n"
        "  tabulor --help | --version\n"
        "\n"
        "A database is a file path (SQLite) or a server URI.\n"
        "Settings: $XDG_CONFIG_HOME/tabulor/tabulor.ini, or the file TABULOR_SETTINGS names.\n"
        "Translations: Kestrel.str beside the library or in the share folder, or the file\n"
        "TABULOR_STRINGS names.\n");
}

int usageError(const QString& problem)
{
    if (!problem.isEmpty())
        printError(QStringLiteral("tabulor: ") + problem);
    printError(usageText());
    return kExitUsage;
}

QString databaseArgument(const QString& name)
{
    const QFileInfo file(name);
    return file.exists() ? file.absoluteFilePath() : name;
}

void printOut(const QString& text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    if (!text.endsWith(u'\n'))
        std::fputc('\n', stdout);
}

void printError(const QString& text)
{
    std::fputs(text.toUtf8().constData(), stderr);
    if (!text.endsWith(u'\n'))
        std::fputc('\n', stderr);
}

bool loadDefinition(ReportSession& session, const QString& path,
                    const std::optional<QString>& database)
{
    session.ResetDefinition();
    session.loadDesigner();
    if (session.OpenReportFile(path, database))
        return true;
    if (const auto& unreadable = session.lastFileError()) {
        printError(QStringLiteral("tabulor: ") + *unreadable);
        return false;
    }
    session.tellUser(session.invalidFileMessage(path));
    if (const auto& fault = session.lastReadError())
        printError(session.strings().readErrorMessage(*fault));
    return false;
}

bool printMissingObjects(const ReportSession& session, const QString& path, bool asWarnings)
{
    const QStringList missing = missingObjects(session);
    const QString prefix =
        QStringLiteral("tabulor: %1%2: ")
            .arg(asWarnings ? QStringLiteral("warning: ") : QString(), QFileInfo(path).fileName());
    for (const QString& message : missing)
        printError(prefix + message);
    return !missing.isEmpty();
}

} // namespace tabulor::cli
