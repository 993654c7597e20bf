#pragma once

#include "definition/ProfileFile.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace tabulor {

// The report files opened last, most recent first, as the File menu lists them and as they
// are kept in section "mru" of the settings file under the keys "0file" to "5file".
class RecentFiles
{
public:
    static constexpr int kMaximum = 6;

    // The entries of the settings file up to the first empty one, leaving out files that no
    // longer exist (exists is asked for each path).
    static RecentFiles load(const ProfileFile& settings,
                            const std::function<bool(const QString&)>& exists);

    const QStringList& paths() const { return m_paths; }
    // The menu caption of entry i: "&1 " and the path.
    QString caption(int i) const;

    // Puts path at the top, unless it is empty or listed already (in any letter case): a
    // file opened again keeps its place. The oldest entry falls off the end.
    void add(const QString& path);

    // Writes one key per entry; keys beyond the last entry keep what they held.
    void save(ProfileFile& settings) const;

private:
    QStringList m_paths;
};

} // namespace tabulor
