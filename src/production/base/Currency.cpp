#include "production/base/Currency.h"

#include <cstdlib>

namespace tabulor {

QString Currency::toString() const
{
    const qint64 whole = tenThousandths / kScale;
    qint64 fraction = std::llabs(tenThousandths % kScale);
    int digits = 4;
    while (digits > 2 && fraction % 10 == 0) {
        fraction /= 10;
        --digits;
    }
    const QString sign = tenThousandths < 0 && whole == 0 ? QStringLiteral("-") : QString();
    return sign + QString::number(whole) + u'.' +
           QStringLiteral("%1").arg(fraction, digits, 10, QChar(u'0'));
}

std::optional<Currency> Currency::fromString(QStringView text)
{
    text = text.trimmed();
    bool negative = false;
    if (!text.isEmpty() && (text.front() == u'-' || text.front() == u'+')) {
        negative = text.front() == u'-';
        text = text.sliced(1);
    }
    const qsizetype point = text.indexOf(u'.');
    const QStringView whole = point < 0 ? text : text.left(point);
    const QStringView fraction = point < 0 ? QStringView() : text.sliced(point + 1);
    if ((whole.isEmpty() && fraction.isEmpty()) || fraction.size() > 4 || whole.size() > 14)
        return std::nullopt;
    qint64 value = 0;
    for (QChar c : whole) {
        if (!c.isDigit())
            return std::nullopt;
        value = value * 10 + c.digitValue();
    }
    qint64 scaled = 0;
    for (qsizetype i = 0; i < 4; ++i) {
        const QChar c = i < fraction.size() ? fraction[i] : QChar(u'0');
        if (!c.isDigit())
            return std::nullopt;
        scaled = scaled * 10 + c.digitValue();
    }
    const qint64 total = value * kScale + scaled;
    return Currency{negative ? -total : total};
}

} // namespace tabulor
