#include "production/formats/FormatLocale.h"

#include <QLocale>

namespace tabulor {

namespace {

void appendLiteral(QString& out, QChar c)
{
    if (c != u' ')
        out += u'\\';
    out += c;
}

// The first character of a pattern that separates its fields: not a letter, not a space and
// not quoted.
QString separatorOf(QStringView pattern, QStringView fallback)
{
    bool quoted = false;
    for (QChar c : pattern) {
        if (c == u'\'')
            quoted = !quoted;
        else if (!quoted && !c.isLetter() && !c.isSpace())
            return QString(c);
    }
    return fallback.toString();
}

// Converts one of Qt's date or time patterns into the display-format language. The character
// `separator` becomes `separatorCode` ('/' or ':'), so that the pattern follows the locale's
// separator; every other character is kept as a literal. Time zones and milliseconds have no
// place in a report cell and are left out.
QString patternFromQt(QStringView qt, QChar separator, QChar separatorCode)
{
    QString out;
    qsizetype i = 0;
    while (i < qt.size()) {
        const QChar c = qt[i];
        qsizetype run = 1;
        while (i + run < qt.size() && qt[i + run] == c)
            ++run;
        switch (c.unicode()) {
        case u'd':
            out += QString(std::min<qsizetype>(run, 4), u'd');
            break;
        case u'M':
            out += QString(std::min<qsizetype>(run, 4), u'm');
            break;
        case u'y':
            out += QStringLiteral("yyyy");
            break;
        case u'h':
        case u'H':
            out += run == 1 ? QStringLiteral("h") : QStringLiteral("hh");
            break;
        case u'm':
            out += run == 1 ? QStringLiteral("n") : QStringLiteral("nn");
            break;
        case u's':
            out += run == 1 ? QStringLiteral("s") : QStringLiteral("ss");
            break;
        case u'z':
        case u't':
            break;
        case u'A':
        case u'a':
            // "AP", "ap", "A" and "a" all name the locale's designators.
            out += QStringLiteral("AMPM");
            run = 1;
            if (i + 1 < qt.size() && (qt[i + 1] == u'P' || qt[i + 1] == u'p'))
                run = 2;
            break;
        case u'\'': {
            run = 1;
            if (i + 1 < qt.size() && qt[i + 1] == u'\'') { // '' is one quote
                appendLiteral(out, c);
                run = 2;
                break;
            }
            qsizetype end = i + 1;
            while (end < qt.size() && qt[end] != u'\'')
                appendLiteral(out, qt[end++]);
            run = end + 1 - i;
            break;
        }
        default:
            run = 1;
            if (c == separator)
                out += separatorCode;
            else
                appendLiteral(out, c);
        }
        i += run;
    }
    // Spaces that stood beside a dropped time zone.
    while (out.endsWith(u' '))
        out.chop(1);
    while (out.startsWith(u' '))
        out.remove(0, 1);
    return out;
}

// The layout of money amounts, read from how the locale writes a sample amount.
QString currencyPattern(const QLocale& locale)
{
    constexpr double sample = 1234.5;
    const QString number = locale.toString(sample, 'f', 2);
    const QString digits = number.contains(locale.groupSeparator()) ? QStringLiteral("#,##0.00")
                                                                    : QStringLiteral("0.00");
    const auto section = [&](double value) {
        const QString text = locale.toCurrencyString(value, QString(), 2);
        QString out;
        const qsizetype at = text.indexOf(number);
        const QStringView before = at < 0 ? QStringView() : QStringView(text).left(at);
        const QStringView after =
            at < 0 ? QStringView() : QStringView(text).sliced(at + number.size());
        for (QChar c : before)
            appendLiteral(out, c);
        out += digits;
        for (QChar c : after)
            appendLiteral(out, c);
        return out;
    };
    return section(sample) + u';' + section(-sample);
}

} // namespace

FormatLocale FormatLocale::fromQLocale(const QLocale& locale)
{
    FormatLocale result;
    result.decimalSeparator = locale.decimalPoint();
    result.thousandsSeparator = locale.groupSeparator();

    const QString qtShortDate = locale.dateFormat(QLocale::ShortFormat);
    const QString qtLongTime = locale.timeFormat(QLocale::LongFormat);
    result.dateSeparator = separatorOf(qtShortDate, u"/");
    result.timeSeparator = separatorOf(qtLongTime, u":");

    for (int day = 1; day <= 7; ++day) {
        result.longDayNames[day - 1] = locale.dayName(day, QLocale::LongFormat);
        result.shortDayNames[day - 1] = locale.dayName(day, QLocale::ShortFormat);
    }
    for (int month = 1; month <= 12; ++month) {
        result.longMonthNames[month - 1] = locale.monthName(month, QLocale::LongFormat);
        result.shortMonthNames[month - 1] = locale.monthName(month, QLocale::ShortFormat);
    }
    result.amDesignator = locale.amText();
    result.pmDesignator = locale.pmText();

    result.shortDate = patternFromQt(qtShortDate, result.dateSeparator.front(), u'/');
    result.mediumDate = QStringLiteral("dd-mmm-yy");
    result.longDate = patternFromQt(locale.dateFormat(QLocale::LongFormat), QChar(), QChar());
    result.shortTime = QStringLiteral("hh:nn");
    result.mediumTime = QStringLiteral("hh:nn AM/PM");
    result.longTime = patternFromQt(qtLongTime, result.timeSeparator.front(), u':');
    result.currency = currencyPattern(locale);
    return result;
}

} // namespace tabulor
