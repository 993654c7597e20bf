#include "commands/StatusLine.h"

#include "localisation/StringTable.h"

namespace tabulor {

QString statusLine(const StringTable& strings, const QString& text, const StatusFacts& facts)
{
    if (!text.isEmpty())
        return text;
    if (facts.databaseName.isEmpty())
        return strings.text(Message::NOREPORT);
    QString line = strings.text(Message::REPORT) + QStringLiteral(" [") + facts.recordSource +
                   QStringLiteral("] ") + strings.text(Message::FROM) + QStringLiteral(" [") +
                   facts.databaseName + u']';
    if (facts.view == DesignerView::Design) {
        line += u' ' + strings.text(Message::RECORDS) + QStringLiteral(" [") +
                QString::number(facts.rowsLoaded) + u'/' + QString::number(facts.recordsCounted) +
                u']';
    } else if (facts.pageCount) {
        // An estimate of the full report's pages would be shown behind the count only where
        // more rows were loaded than counted, which never happens: the count stands alone.
        line += u' ' + strings.text(Message::PAGES) + QStringLiteral(" [") +
                QString::number(*facts.pageCount) + u']';
    }
    return line;
}

QString windowCaption(const QString& applicationTitle, const QString& reportPath)
{
    return reportPath.isEmpty() ? applicationTitle
                                : applicationTitle + QStringLiteral(" - ") + reportPath;
}

} // namespace tabulor
