#pragma once

#include <QString>
#include <QVariant>

struct sqlite3;

namespace tabulor {

// Registers on a connection of the embedded engine the Jet functions that translated queries
// call: jet_like (Like with * ? # [list] [!list], ignoring case), jet_concat (&), jet_round
// (half to even, as CCur, CLng and Round do), jet_int, jet_right, jet_pow, jet_datepart,
// jet_dateserial, jet_dateadd, jet_datearith (a date plus or minus days), jet_cdate,
// jet_format and the aggregates jet_first and jet_last. Dates are "yyyy-MM-dd[ HH:mm:ss]" text.
// False when the engine refused one of them.
bool registerJetFunctions(sqlite3* db);

// Jet's Like: * any run, ? any character, # any digit, [abc] [a-z] [!abc] one of (not of) a set;
// letters match without regard to case.
bool jetLike(QStringView text, QStringView pattern);

// The named and the simple custom formats of Format(): "Short Date", "Medium Date",
// "Long Date", "General Date", "Long Time", "Short Time", "Currency", "Fixed", "Standard",
// "Percent", "General Number", "Yes/No", date patterns of yyyy yy q mmmm mmm mm m dddd ddd dd d
// hh h nn ss AM/PM and number patterns of 0 # , . %. Anything else shows the value's own text.
QString jetFormat(const QVariant& value, const QString& format);

} // namespace tabulor
