#include "component/RecentFiles.h"

namespace tabulor {

namespace {

const QString kSection = QStringLiteral("mru");

QString keyOf(int i)
{
    return QString::number(i) + QStringLiteral("file");
}

} // namespace

RecentFiles RecentFiles::load(const ProfileFile& settings,
                              const std::function<bool(const QString&)>& exists)
{
    RecentFiles files;
    for (int i = 0; i < kMaximum; ++i) {
        const QString path = settings.value(kSection, keyOf(i), ProfileFile::kSettingsBuffer);
        if (path.isEmpty())
            break;
        if (exists(path))
            files.m_paths.append(path);
    }
    return files;
}

QString RecentFiles::caption(int i) const
{
    return QStringLiteral("&%1 %2").arg(i + 1).arg(m_paths.at(i));
}

void RecentFiles::add(const QString& path)
{
    if (path.isEmpty())
        return;
    for (const QString& known : m_paths) {
        if (known.toLower() == path.toLower())
            return;
    }
    m_paths.prepend(path);
    if (m_paths.size() > kMaximum)
        m_paths.removeLast();
}

void RecentFiles::save(ProfileFile& settings) const
{
    for (int i = 0; i < m_paths.size(); ++i)
        settings.setValue(kSection, keyOf(i), m_paths.at(i));
}

} // namespace tabulor
