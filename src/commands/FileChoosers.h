#pragma once

#include <QString>
#include <QStringList>

namespace tabulor {

class Prompt;

// The file description that names report definitions in the choosers.
inline constexpr const char* kFileDescription = "Tabulor";

// A classic filter ("text|pattern|text|pattern") as Qt's choosers take it: one
// "text (patterns)" entry a pair, patterns separated by blanks, "*.*" as "*".
QStringList qtFileFilters(const QString& classic);

// The filter of the Open and Save As choosers: report definitions, database files, all files.
QString definitionFileFilter();

// The Open chooser for a report definition, or with database for a database file; it starts
// in the folder of the current report file, if there is one. Empty when cancelled.
QString AskOpenFile(Prompt& prompt, const QString& currentFileName, bool database);
// The Save As chooser, which asks before replacing a file. Empty when cancelled.
QString AskSaveFile(Prompt& prompt, const QString& currentFileName);

} // namespace tabulor
