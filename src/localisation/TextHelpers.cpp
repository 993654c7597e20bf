#include "localisation/TextHelpers.h"

namespace tabulor {

namespace {

QStringView trimmed(QStringView text, bool alsoTabs)
{
    const auto isBlank = [alsoTabs](QChar c) { return c == u' ' || (alsoTabs && c == u'\t'); };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.sliced(begin, end - begin);
}

} // namespace

QString TrimSpaces(QStringView text)
{
    return trimmed(text, false).toString();
}

QString TrimBlanks(QStringView text)
{
    return trimmed(text, true).toString();
}

bool FillListFromText(QStringList& list, const QString& text, int expectedCount)
{
    QStringList pieces = text.split(u'|', Qt::KeepEmptyParts);
    if (pieces.size() != expectedCount)
        return false;
    list = std::move(pieces);
    return true;
}

} // namespace tabulor
