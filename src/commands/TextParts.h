#pragma once

#include <QString>

#include <array>

namespace tabulor {

// A page header or footer as three boxes, left, centre and right, stored as one text joined by
// "|" ("left||right" when the centre is empty).
using TextParts = std::array<QString, 3>;

QString joinTextParts(const TextParts& parts);
// The inverse of joinTextParts: a text with more than two "|" keeps the rest in the right
// part, so that splitting and joining again gives back the text unchanged.
TextParts splitTextParts(const QString& text);

} // namespace tabulor
