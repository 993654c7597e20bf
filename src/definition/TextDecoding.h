#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tabulor {

// Text files of this system are written as UTF-8. Files from older installations are in the
// Windows Western code page, so bytes that are not valid UTF-8 are read as Windows-1252
// instead. A leading UTF-8 byte-order mark is skipped.
QString decodeText(const QByteArray& bytes);

// Splits decoded text into lines ending in CRLF, LF or a lone CR. A final line without an
// ending is kept; an ending at the very end adds no empty line.
QStringList splitLines(const QString& text);

} // namespace tabulor
