#pragma once

#include <QStringView>
#include <QVariant>

namespace tabulor {

// Reads "YYYY-MM-DD" as a QDate, "YYYY-MM-DD HH:MM[:SS[.fff]]" (T or a blank between the two
// parts, optionally followed by Z or +HH:MM) as a QDateTime and "HH:MM[:SS[.fff]]" as a QTime.
// A date-time without a zone keeps its clock reading and is held as UTC, so that no
// daylight-saving rule shifts it. Anything else gives an invalid QVariant.
QVariant parseIsoDateTime(QStringView text);

} // namespace tabulor
