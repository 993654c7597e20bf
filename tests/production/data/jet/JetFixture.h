#pragma once

#include "production/data/DataSource.h"
#include "production/data/Recordset.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace tabulor::test {

// Opens a database through the factory; a failed open fails the test with the message.
std::unique_ptr<DataSource> openJet(const QString& path);

// Opens a record source with no row limit; null (and a failed expectation) on failure.
std::unique_ptr<Recordset> openSource(DataSource& source, const QString& name);

// The rows of a record source printed as mdb-export prints them: a header line of field names,
// then one line per row, text, dates and binary values in double quotes (quotes doubled),
// dates as "yyyy-MM-dd HH:mm:ss", currency with four decimals, singles with eight significant
// digits, booleans as 1 and 0, each line ending in a line feed.
QByteArray exportText(Recordset& records);

// Replaces every occurrence of a name in a copy of a Jet file, however the file stores text
// (one byte or two per character), keeping its length. Returns how many were replaced.
int renameInFile(const QString& path, const QString& from, const QString& to);

} // namespace tabulor::test
