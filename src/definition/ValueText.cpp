#include "definition/ValueText.h"

#include <cmath>
#include <limits>

namespace tabulor {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}
bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Scans the number at the start of text (after blanks) and returns how many characters it
// takes, with its value; 0 characters when there is no number.
std::pair<qsizetype, double> scanNumber(QStringView text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && isBlank(text[i]))
        ++i;
    const qsizetype start = i;
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    qsizetype digits = 0;
    while (i < n && isDigit(text[i])) {
        ++i;
        ++digits;
    }
    if (i < n && text[i] == u'.') {
        ++i;
        while (i < n && isDigit(text[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return {0, 0.0};
    qsizetype end = i;
    if (i < n && (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        qsizetype j = i + 1;
        if (j < n && (text[j] == u'+' || text[j] == u'-'))
            ++j;
        const qsizetype expStart = j;
        while (j < n && isDigit(text[j]))
            ++j;
        if (j > expStart)
            end = j;
    }
    QString number = text.sliced(start, end - start).toString();
    for (QChar& c : number) {
        if (c == u'd' || c == u'D')
            c = u'e';
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    return {ok ? end : 0, ok ? value : 0.0};
}

template <typename T> std::optional<T> roundedInRange(double value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    const double rounded = std::nearbyint(value); // the default rounding mode: half to even
    if (rounded < std::numeric_limits<T>::min() || rounded > std::numeric_limits<T>::max())
        return std::nullopt;
    return static_cast<T>(rounded);
}

} // namespace

QString booleanText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString shortestSingleText(float value)
{
    QString text = QString::number(static_cast<double>(value), 'g', 7);
    const qsizetype e = text.indexOf(u'e');
    if (e >= 0) {
        // "1e+07" -> "1E+07", as the classic number printing writes exponents.
        text[e] = u'E';
    }
    return text;
}

double leadingNumber(QStringView text)
{
    return scanNumber(text).second;
}

std::optional<double> strictNumber(QStringView text)
{
    const auto [length, value] = scanNumber(text);
    if (length == 0)
        return std::nullopt;
    for (qsizetype i = length; i < text.size(); ++i) {
        if (!isBlank(text[i]))
            return std::nullopt;
    }
    return value;
}

std::optional<qint16> toInt16(double value)
{
    return roundedInRange<qint16>(value);
}
std::optional<qint32> toInt32(double value)
{
    return roundedInRange<qint32>(value);
}

std::optional<float> toSingle(double value)
{
    if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max())
        return std::nullopt;
    return static_cast<float>(value);
}

std::optional<bool> strictBoolean(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    if (const auto number = strictNumber(trimmed))
        return *number != 0.0;
    return std::nullopt;
}

} // namespace tabulor
