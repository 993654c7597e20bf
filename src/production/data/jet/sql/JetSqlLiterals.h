#pragma once

#include <QString>

#include <optional>

namespace tabulor {

// A text as a literal of the engine's SQL: in single quotes, quotes inside doubled.
QString sqlTextLiteral(const QString& text);

// The text of a #date# literal (without its # signs) as the engine holds dates,
// "yyyy-MM-dd[ HH:mm:ss]"; nullopt when it is no date. Jet SQL writes dates month first
// (m/d/yyyy) whatever the locale, or in ISO order; a time may follow, with AM or PM. Two-digit
// years 00-29 are 2000-2029, 30-99 are 1930-1999.
std::optional<QString> jetDateLiteral(const QString& text);

} // namespace tabulor
