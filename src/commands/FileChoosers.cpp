#include "commands/FileChoosers.h"

#include "component/Prompt.h"

#include <QFileInfo>

namespace tabulor {

QStringList qtFileFilters(const QString& classic)
{
    const QStringList parts = classic.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns = parts.at(i + 1).split(u';', Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == u"*.*")
                pattern = QStringLiteral("*");
        }
        QString text = parts.at(i).trimmed();
        // A classic text often names its patterns already: "Files (*.vrd)".
        const qsizetype named = text.lastIndexOf(u" (");
        if (named > 0 && text.endsWith(u')'))
            text.truncate(named);
        filters.append(QStringLiteral("%1 (%2)").arg(text, patterns.join(u' ')));
    }
    return filters;
}

QString definitionFileFilter()
{
    // Database files are those of every engine a report can read from a file.
    return QString::fromLatin1(kFileDescription) +
           QStringLiteral(" Files (*.vrd)|*.vrd|Database files (*.mdb)|*.mdb;*.accdb;*.sqlite;"
                          "*.sqlite3;*.db|All Files (*.*)|*.*");
}

namespace {

FileRequest chooser(FileRequest::Purpose purpose, const QString& currentFileName)
{
    FileRequest request;
    request.purpose = purpose;
    request.filters = qtFileFilters(definitionFileFilter());
    if (!currentFileName.isEmpty())
        request.folder = QFileInfo(currentFileName).absolutePath();
    return request;
}

} // namespace

QString AskOpenFile(Prompt& prompt, const QString& currentFileName, bool database)
{
    FileRequest request = chooser(FileRequest::Open, currentFileName);
    request.selectedFilter = database ? 1 : 0;
    request.fileName = database ? QStringLiteral(".mdb") : QStringLiteral(".vrd");
    return prompt.chooseFile(request);
}

QString AskSaveFile(Prompt& prompt, const QString& currentFileName)
{
    FileRequest request = chooser(FileRequest::Save, currentFileName);
    request.fileName = QStringLiteral(".vrd");
    return prompt.chooseFile(request);
}

} // namespace tabulor
