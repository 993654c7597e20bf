#pragma once

#include "production/formats/FormatLocale.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

namespace tabulor {

// What the tokens of titles, page headers and footers stand for.
struct TokenContext
{
    int pageCount = 0;      // <n>
    QString databaseName;   // <db>; a blank when empty
    QString recordSource;   // <rs>; stays literally when empty
    QString reportFileName; // <rf>, without its folder; stays literally when empty
    std::function<QDateTime()> clock = [] { return QDateTime::currentDateTime(); };
    FormatLocale locale;
};

// Replaces every token but <p>, each over the whole text in turn: <n>, <line>, <d>, <dd>,
// <ddd>, <t>, <tt>, <ttt>, <db>, <rs>, <rf>. The clock is read afresh for each date or time
// token.
QString ExpandTokens(const QString& text, const TokenContext& context);

// What follows the last "\" or "/" of a path.
QString FileNameOnly(const QString& path);

// The parts of a header or footer line for one page: <p> replaced, empty parts between "|"
// given a blank, split at "|", at most three parts, each trimmed (an empty part draws nothing).
QStringList headerParts(const QString& expanded, int page);

} // namespace tabulor
