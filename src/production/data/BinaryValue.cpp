#include "production/data/BinaryValue.h"

namespace tabulor {

QString BinaryValue::text() const
{
    constexpr qint64 kKilobyte = 1024;
    constexpr qint64 kMegabyte = 1024 * kKilobyte;
    QString amount;
    if (size < kKilobyte)
        amount = QStringLiteral("%1 bytes").arg(size);
    else if (size < kMegabyte)
        amount = QStringLiteral("%1 KB").arg((size + kKilobyte / 2) / kKilobyte);
    else
        amount = QStringLiteral("%1 MB").arg(double(size) / double(kMegabyte), 0, 'f', 1);
    return QStringLiteral("(binary, %1)").arg(amount);
}

QVariant binaryValue(qint64 size)
{
    // Every formatting path ends in QVariant::toString() for a value it has no format for.
    static const bool converts =
        QMetaType::registerConverter<BinaryValue, QString>(&BinaryValue::text);
    Q_UNUSED(converts);
    return QVariant::fromValue(BinaryValue{size});
}

} // namespace tabulor
