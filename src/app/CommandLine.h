#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tabulor {

class ReportSession;

namespace cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

// Prints the usage to stderr (with a line saying what was wrong, if anything) and gives the
// exit status for bad arguments.
int usageError(const QString& problem = QString());
QString usageText();

// A database given on the command line: files are stored with their absolute path, so that
// the definition finds them wherever it is saved; server names stand as given.
QString databaseArgument(const QString& name);

void printOut(const QString& text);
void printError(const QString& text);

// Loads a definition as the designer opens one, optionally reading its data from another
// database; on failure tells the user why and returns false.
bool loadDefinition(ReportSession& session, const QString& path,
                    const std::optional<QString>& database = std::nullopt);

// Prints what the loaded definition names that its data lacks (see missingObjects), one line
// each, as errors or as warnings; true when there was anything.
bool printMissingObjects(const ReportSession& session, const QString& path, bool asWarnings);

int runDesign(const QStringList& arguments);
int runInfo(const QStringList& arguments);
int runNew(const QStringList& arguments);
int runPrint(const QStringList& arguments);
int runRender(const QStringList& arguments);
int runSave(const QStringList& arguments);
int runSources(const QStringList& arguments);

} // namespace cli
} // namespace tabulor
