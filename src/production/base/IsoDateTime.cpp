#include "production/base/IsoDateTime.h"

#include <QDateTime>

namespace tabulor {

namespace {

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The number written with `count` digits at `pos`, or -1 when any of them is missing.
int digits(QStringView text, qsizetype pos, int count)
{
    if (pos + count > text.size())
        return -1;
    int value = 0;
    for (qsizetype i = pos; i < pos + count; ++i) {
        if (!isAsciiDigit(text[i]))
            return -1;
        value = value * 10 + (text[i].unicode() - u'0');
    }
    return value;
}

// Reads "HH:MM[:SS[.fff...]]" at `pos`; *end is set to the first character after it.
QTime readTime(QStringView text, qsizetype pos, qsizetype* end)
{
    const int hours = digits(text, pos, 2);
    const int minutes = digits(text, pos + 3, 2);
    if (hours < 0 || minutes < 0 || text[pos + 2] != u':')
        return {};
    qsizetype next = pos + 5;
    int seconds = 0;
    int milliseconds = 0;
    if (next < text.size() && text[next] == u':') {
        seconds = digits(text, next + 1, 2);
        if (seconds < 0)
            return {};
        next += 3;
        if (next < text.size() && text[next] == u'.') {
            // Any number of fraction digits; the first three are the milliseconds.
            qsizetype fractionEnd = next + 1;
            while (fractionEnd < text.size() && isAsciiDigit(text[fractionEnd]))
                ++fractionEnd;
            if (fractionEnd == next + 1)
                return {};
            for (qsizetype i = next + 1; i < next + 4; ++i)
                milliseconds = milliseconds * 10 + (i < fractionEnd ? text[i].unicode() - u'0' : 0);
            next = fractionEnd;
        }
    }
    *end = next;
    return QTime(hours, minutes, seconds, milliseconds);
}

// The zone written after a time: nothing, "Z" or "+HH:MM"/"-HH:MM".
QVariant withZone(QDate date, QTime time, QStringView zone)
{
    if (zone.isEmpty() || zone == u"Z")
        return QDateTime(date, time, Qt::UTC);
    const int hours = digits(zone, 1, 2);
    const int minutes = digits(zone, 4, 2);
    if (zone.size() != 6 || (zone[0] != u'+' && zone[0] != u'-') || zone[3] != u':' || hours < 0 ||
        minutes < 0)
        return {};
    const int offset = (hours * 60 + minutes) * 60 * (zone[0] == u'-' ? -1 : 1);
    return QDateTime(date, time, Qt::OffsetFromUTC, offset);
}

} // namespace

QVariant parseIsoDateTime(QStringView text)
{
    qsizetype end = 0;
    if (text.size() >= 5 && text[2] == u':') {
        const QTime time = readTime(text, 0, &end);
        return time.isValid() && end == text.size() ? QVariant(time) : QVariant();
    }
    const int year = digits(text, 0, 4);
    const int month = digits(text, 5, 2);
    const int day = digits(text, 8, 2);
    if (year < 0 || month < 0 || day < 0 || text[4] != u'-' || text[7] != u'-')
        return {};
    const QDate date(year, month, day);
    if (!date.isValid())
        return {};
    if (text.size() == 10)
        return date;
    if (text[10] != u'T' && text[10] != u' ')
        return {};
    const QTime time = readTime(text, 11, &end);
    if (!time.isValid())
        return {};
    return withZone(date, time, text.mid(end));
}

} // namespace tabulor
