#include "definition/RegularFile.h"

#include <QFile>
#include <QFileInfo>

namespace tabulor {

namespace {

QString sizeText(qint64 bytes)
{
    constexpr qint64 kKilobyte = 1024;
    constexpr qint64 kMegabyte = kKilobyte * kKilobyte;
    if (bytes >= kMegabyte && bytes % kMegabyte == 0)
        return QStringLiteral("%1 MB").arg(bytes / kMegabyte);
    if (bytes >= kKilobyte && bytes % kKilobyte == 0)
        return QStringLiteral("%1 KB").arg(bytes / kKilobyte);
    return QStringLiteral("%1 bytes").arg(bytes);
}

QString tooLarge(const QString& path, qint64 maxBytes)
{
    return QStringLiteral("'%1' is larger than %2, too large to be read")
        .arg(path, sizeText(maxBytes));
}

} // namespace

std::optional<QByteArray> readRegularFile(const QString& path, qint64 maxBytes, QString* error)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        *error = QStringLiteral("'%1' does not exist").arg(path);
        return std::nullopt;
    }
    if (info.isDir()) {
        *error = QStringLiteral("'%1' is a folder, not a file").arg(path);
        return std::nullopt;
    }
    if (!info.isFile()) {
        *error =
            QStringLiteral("'%1' is not a regular file (it is a device, pipe or socket)").arg(path);
        return std::nullopt;
    }
    if (info.size() > maxBytes) {
        *error = tooLarge(path, maxBytes);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("'%1' cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    // The size may have changed since it was looked at (a file that grows, a file of a
    // system folder that tells no size): no more than one byte beyond the limit is read.
    QByteArray bytes = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError) {
        *error = QStringLiteral("'%1' cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    if (bytes.size() > maxBytes) {
        *error = tooLarge(path, maxBytes);
        return std::nullopt;
    }
    return bytes;
}

} // namespace tabulor
