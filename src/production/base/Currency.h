#pragma once

#include <QMetaType>
#include <QString>
#include <QtGlobal>

#include <compare>
#include <optional>

namespace tabulor {

// An exact money amount: a whole number of ten-thousandths, as databases keep currency. Sums
// of currency stay exact; formats and averages take the value as a double.
struct Currency
{
    qint64 tenThousandths = 0;

    static constexpr qint64 kScale = 10000;

    double toDouble() const { return static_cast<double>(tenThousandths) / kScale; }
    // The exact decimal text with "." and no trailing zeros beyond the cents: "12.5" -> "12.50",
    // "0.1234" stays.
    QString toString() const;
    // Parses a plain decimal text ("-12.3456"); nothing for anything else or more than four
    // decimals.
    static std::optional<Currency> fromString(QStringView text);

    friend auto operator<=>(const Currency&, const Currency&) = default;
};

} // namespace tabulor

Q_DECLARE_METATYPE(tabulor::Currency)
