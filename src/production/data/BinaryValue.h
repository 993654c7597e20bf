#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

namespace tabulor {

// What a report holds of a binary value (a picture, a document, an OLE object, any bytes): its
// size, shown as "(binary, 328 KB)". The bytes themselves are never printed, so they are
// neither kept nor, where the database can tell the size without them, read.
struct BinaryValue
{
    qint64 size = 0;

    // "(binary, 0 bytes)", "(binary, 512 bytes)", "(binary, 328 KB)", "(binary, 2.4 MB)".
    QString text() const;

    friend bool operator==(const BinaryValue&, const BinaryValue&) = default;
};

// A binary value of this many bytes as a QVariant, whose toString() gives its text.
QVariant binaryValue(qint64 size);

} // namespace tabulor

Q_DECLARE_METATYPE(tabulor::BinaryValue)
