#include "production/data/DatabaseLocation.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace tabulor {

namespace {

bool isServerName(const QString& name)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    // "C:\..." is a drive letter, not a scheme: schemes here are longer than one letter.
    return scheme.match(name).hasMatch();
}

QString fileNamePart(const QString& name)
{
    const qsizetype slash = std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\'));
    return name.mid(slash + 1);
}

} // namespace

QString resolveDatabasePath(const QString& name, const QString& definitionPath)
{
    if (name.isEmpty() || isServerName(name))
        return name;
    QString path = name;
    path.replace(u'\\', u'/');
    const QDir definitionDir =
        definitionPath.isEmpty() ? QDir::current() : QFileInfo(definitionPath).absoluteDir();
    const bool windowsAbsolute = path.size() > 2 && path.at(1) == u':' && path.at(2) == u'/';
    if (!windowsAbsolute) {
        const QString direct = QDir::isAbsolutePath(path) ? path : definitionDir.filePath(path);
        if (QFileInfo::exists(direct))
            return QDir::cleanPath(direct);
        if (QDir::isRelativePath(path) && QFileInfo::exists(path))
            return QFileInfo(path).absoluteFilePath();
    }
    const QString beside = definitionDir.filePath(fileNamePart(name));
    if (QFileInfo::exists(beside))
        return QDir::cleanPath(beside);
    return name;
}

QString databaseShortName(const QString& name)
{
    return fileNamePart(name);
}

} // namespace tabulor
