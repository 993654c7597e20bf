#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tabulor {

// The largest definition or settings file that is read: far beyond what a report needs, and
// small enough that a wrong file named by mistake is refused before it fills the memory.
inline constexpr qint64 kMaxProfileFileBytes = 64 * 1024 * 1024;

// The whole of a regular file of at most maxBytes bytes. A folder, device, pipe or socket is
// refused before it is opened (a pipe would wait for a writer, a device never ends), and so
// is a larger file. On failure *error says why, with the path, in words for the user.
std::optional<QByteArray> readRegularFile(const QString& path, qint64 maxBytes, QString* error);

} // namespace tabulor
