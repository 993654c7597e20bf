#include "production/report/Tokens.h"

#include "production/formats/DisplayFormat.h"

#include <QRegularExpression>

namespace tabulor {

QString ExpandTokens(const QString& text, const TokenContext& c)
{
    QString result = text;
    const auto now = [&](const char* format) {
        return formatValue(c.clock(), QString::fromLatin1(format), c.locale);
    };
    result.replace(QStringLiteral("<n>"), QString::number(c.pageCount));
    result.replace(QStringLiteral("<line>"), QStringLiteral("\n"));
    const std::pair<const char*, const char*> clockTokens[] = {
        {"<d>", "Short Date"}, {"<dd>", "Medium Date"}, {"<ddd>", "Long Date"},
        {"<t>", "Short Time"}, {"<tt>", "Medium Time"}, {"<ttt>", "Long Time"},
    };
    for (const auto& [token, format] : clockTokens) {
        const QString t = QString::fromLatin1(token);
        if (result.contains(t))
            result.replace(t, now(format));
    }
    result.replace(QStringLiteral("<db>"),
                   c.databaseName.isEmpty() ? QStringLiteral(" ") : c.databaseName);
    if (!c.recordSource.isEmpty())
        result.replace(QStringLiteral("<rs>"), c.recordSource);
    if (!c.reportFileName.isEmpty())
        result.replace(QStringLiteral("<rf>"), FileNameOnly(c.reportFileName));
    return result;
}

QString FileNameOnly(const QString& path)
{
    const qsizetype cut = std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/'));
    return path.mid(cut + 1);
}

QStringList headerParts(const QString& expanded, int page)
{
    QString text = expanded;
    text.replace(QStringLiteral("<p>"), QString::number(page));
    // Twice, so that three separators in a row also get a blank in each empty part.
    text.replace(QStringLiteral("||"), QStringLiteral("| |"));
    text.replace(QStringLiteral("||"), QStringLiteral("| |"));
    QStringList parts = text.split(u'|');
    parts = parts.mid(0, 3);
    for (QString& part : parts)
        part = part.trimmed();
    return parts;
}

} // namespace tabulor
