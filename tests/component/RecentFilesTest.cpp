#include "component/RecentFiles.h"

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

RecentFiles loaded(const QString& settings, const QStringList& existing)
{
    return RecentFiles::load(ProfileFile::fromText(settings),
                             [&](const QString& path) { return existing.contains(path); });
}

} // namespace

TEST(RecentFiles, AFileThatIsGoneIsLeftOutAndItsKeyKeptUntilOverwritten)
{
    RecentFiles files =
        loaded("[mru]\n0file=/gone.vrd\n1file=/here.vrd\n2file=\n3file=/after.vrd\n",
               {"/here.vrd", "/after.vrd"});
    EXPECT_EQ(files.paths(), QStringList{"/here.vrd"}) << "the list ends at the first empty key";
    EXPECT_EQ(files.caption(0), QStringLiteral("&1 /here.vrd"));

    ProfileFile settings =
        ProfileFile::fromText("[mru]\n0file=/gone.vrd\n1file=/here.vrd\n3file=/after.vrd\n");
    files.save(settings);
    EXPECT_EQ(settings.value(u"mru", u"0file", 128), QStringLiteral("/here.vrd"));
    EXPECT_EQ(settings.value(u"mru", u"1file", 128), QStringLiteral("/here.vrd"));
    EXPECT_EQ(settings.value(u"mru", u"3file", 128), QStringLiteral("/after.vrd"));
}

TEST(RecentFiles, NewestFirstSixAtMostAndAReopenedFileKeepsItsPlace)
{
    RecentFiles files;
    for (int i = 1; i <= 7; ++i)
        files.add(QStringLiteral("/r%1.vrd").arg(i));
    EXPECT_EQ(files.paths(),
              (QStringList{"/r7.vrd", "/r6.vrd", "/r5.vrd", "/r4.vrd", "/r3.vrd", "/r2.vrd"}));
    files.add(QStringLiteral("/R4.VRD"));
    files.add(QString());
    EXPECT_EQ(files.paths().first(), QStringLiteral("/r7.vrd"));
    EXPECT_EQ(files.paths().size(), RecentFiles::kMaximum);
    EXPECT_EQ(files.caption(5), QStringLiteral("&6 /r2.vrd"));
}
