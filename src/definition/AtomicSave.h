#pragma once

#include <QByteArray>
#include <QString>

namespace tabulor {

// Writes bytes to a temporary file beside path and renames it over path, so that a failed
// save leaves the previous file as it was. Returns false with *error in words for the user.
[[nodiscard]] bool saveAtomically(const QString& path, const QByteArray& bytes, QString* error);

} // namespace tabulor
