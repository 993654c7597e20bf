#pragma once

#include <QString>

namespace tabulor {

// Where the database that a definition names is found. Server names (a URI such as
// postgresql://... or odbc:...) stand as they are. A file path may use either separator; a
// relative one is taken from the definition's folder first. A file that is not at its path
// is looked for by its file name beside the definition. Gives the name as written when
// nothing is found, so that the failure names what the user wrote.
QString resolveDatabasePath(const QString& name, const QString& definitionPath);

// The file-name part of a database name (after the last "/" or "\"): what captions and the
// database token show.
QString databaseShortName(const QString& name);

} // namespace tabulor
