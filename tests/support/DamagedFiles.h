#pragma once

#include <QString>

namespace tabulor::test {

// Spoils one page in the middle of an SQLite file of 4096-byte pages: the rows of a table
// filled in order can then be read up to there.
void damageMiddlePage(const QString& sqlitePath);

// Gives every table of a Jet 4 file that spans four data pages or more a page in the middle
// whose owner is no table; the catalog is spared. The number of tables damaged.
int damageJetTables(const QString& jetPath);

} // namespace tabulor::test
