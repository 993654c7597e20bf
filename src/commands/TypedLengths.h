#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace tabulor {

// Lengths the user types into the properties dialog's combo boxes, read by their leading
// number ("6 pt", "1.5\"", anything after the number is ignored; text without one reads as
// 0), stored in twips rounded half to even. Negative lengths become 0; lengths too long for
// the report become the longest it holds.

// A space before or after a row, in points: "4.5" is 90 twips.
qint32 spacingTwips(QStringView text);
// How a space shows in its combo: "6 pt", "4.5 pt".
QString spacingText(qint32 twips);

// The maximum height of a row, in inches (single precision, as the report stores it): "1.5\""
// is 2160 twips; 0 lets rows be as tall as their text.
qint32 rowHeightTwips(QStringView text);
// How a maximum height shows in its combo: defaultText for 0, else inches with an inch mark.
QString rowHeightText(qint32 twips, const QString& defaultText);

} // namespace tabulor
