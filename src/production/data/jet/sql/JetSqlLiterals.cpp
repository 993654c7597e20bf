#include "production/data/jet/sql/JetSqlLiterals.h"

#include <QDate>
#include <QRegularExpression>

namespace tabulor {

QString sqlTextLiteral(const QString& text)
{
    QString escaped = text;
    escaped.replace(u'\'', QLatin1String("''"));
    return u'\'' + escaped + u'\'';
}

std::optional<QString> jetDateLiteral(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:(\\d{1,2})/(\\d{1,2})/(\\d{2,4})|(\\d{4})-(\\d{1,2})-(\\d{1,2}))"
                       "(?:\\s+(\\d{1,2}):(\\d{2})(?::(\\d{2}))?\\s*([AaPp][Mm])?)?$"));
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    int year = m.captured(4).isEmpty() ? m.captured(3).toInt() : m.captured(4).toInt();
    if (m.captured(4).isEmpty() && m.captured(3).size() <= 2)
        year += year < 30 ? 2000 : 1900;
    const int month = (m.captured(4).isEmpty() ? m.captured(1) : m.captured(5)).toInt();
    const int day = (m.captured(4).isEmpty() ? m.captured(2) : m.captured(6)).toInt();
    const QDate date(year, month, day);
    if (!date.isValid())
        return std::nullopt;
    QString result = date.toString(Qt::ISODate);
    if (!m.captured(7).isEmpty()) {
        int hour = m.captured(7).toInt();
        const QString half = m.captured(10).toUpper();
        if (half == u"PM" && hour < 12)
            hour += 12;
        else if (half == u"AM" && hour == 12)
            hour = 0;
        const QTime time(hour, m.captured(8).toInt(), m.captured(9).toInt());
        if (!time.isValid())
            return std::nullopt;
        if (time != QTime(0, 0))
            result += u' ' + time.toString(QStringLiteral("HH:mm:ss"));
    }
    return result;
}

} // namespace tabulor
