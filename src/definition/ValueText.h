#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tabulor {

// Conversions between values and the text of definition and settings files. Numbers are
// always written with "." as the decimal separator, whatever the locale.

// "True" or "False".
QString booleanText(bool value);
// The shortest decimal text of a single-precision number with at most seven significant
// digits: "8.25", "12", "0.1", "1E+07".
QString shortestSingleText(float value);

// The leading number of a text: leading blanks skipped, an optional sign, digits with at most
// one decimal point and an optional exponent; reading stops at the first other character.
// Text without a leading number gives 0.
double leadingNumber(QStringView text);

// A whole text (blanks around it allowed) that is a number, or nothing.
std::optional<double> strictNumber(QStringView text);

// Rounds half to even, as the classic integer conversions do, and checks the range.
std::optional<qint16> toInt16(double value);
std::optional<qint32> toInt32(double value);
std::optional<float> toSingle(double value);

// "True"/"False" in any letter case, or a number (0 is false, anything else true).
std::optional<bool> strictBoolean(QStringView text);

} // namespace tabulor
