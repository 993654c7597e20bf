#pragma once

#include <QString>

struct sqlite3;

namespace tabulor {

// Registers on a connection of the embedded engine the Jet functions that translated queries
// call: jet_like (Like with * ? # [list] [!list], ignoring case), jet_concat (&), jet_round
// (half to even, as CCur, CLng and Round do), jet_int, jet_right, jet_pow, jet_datepart,
// jet_dateserial, jet_dateadd, jet_datearith (a date plus or minus days), jet_cdate,
// jet_format (Format(), in the user's locale at the time of the call) and the aggregates
// jet_first and jet_last. Dates are "yyyy-MM-dd[ HH:mm:ss]" text. False when the engine refused
// one of them.
bool registerJetFunctions(sqlite3* db);

// Jet's Like: * any run, ? any character, # any digit, [abc] [a-z] [!abc] one of (not of) a set;
// letters match without regard to case.
bool jetLike(QStringView text, QStringView pattern);

} // namespace tabulor
