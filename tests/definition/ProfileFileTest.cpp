#include "definition/ProfileFile.h"

#include "TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

QString read(const ProfileFile& file, const char* section, const char* key,
             qsizetype buffer = ProfileFile::kDefinitionBuffer)
{
    return file.value(QString::fromLatin1(section), QString::fromLatin1(key), buffer);
}

} // namespace

TEST(ProfileFile, SectionsAndKeysMatchWithoutCaseAndTheFirstOccurrenceWins)
{
    const ProfileFile file = ProfileFile::fromText(QStringLiteral("[General]\n"
                                                                  "Version = one\n"
                                                                  "version = two\n"
                                                                  "[GENERAL]\n"
                                                                  "Other = hidden\n"
                                                                  "[ Style 1 ]\n"
                                                                  "  FontName  =  Tahoma  \n"));
    EXPECT_EQ(read(file, "general", "VERSION"), QStringLiteral("one"));
    // A second section of the same name is never reached.
    EXPECT_EQ(read(file, "General", "Other"), QString());
    EXPECT_EQ(read(file, "style 1", "fontname"), QStringLiteral("Tahoma"));
    EXPECT_FALSE(file.contains(u"Style 2", u"FontName"));
}

TEST(ProfileFile, ValuesAreTrimmedUnquotedAndCutToTheBuffer)
{
    const QString longValue(300, u'x');
    const ProfileFile file =
        ProfileFile::fromText(QStringLiteral("[S]\r\n"
                                             "quoted = \" padded \" \r\n"
                                             "half = \"open\r\n"
                                             "empty =\r\n"
                                             "nul = title \0junk\r\n"
                                             "long = ") +
                              longValue + QStringLiteral("\r\n") + QStringLiteral("blank = ") +
                              QString(256, u'y') + QStringLiteral(" z\r\n"));
    EXPECT_EQ(read(file, "S", "quoted"), QStringLiteral(" padded "));
    EXPECT_EQ(read(file, "S", "half"), QStringLiteral("\"open"));
    EXPECT_EQ(read(file, "S", "empty"), QString());
    // A value ends at a NUL, and a value that is cut, like every other, ends in no blank: saved
    // again, it reads back the same.
    EXPECT_EQ(read(file, "S", "nul"), QStringLiteral("title"));
    EXPECT_EQ(read(file, "S", "blank"), QString(256, u'y'));
    EXPECT_EQ(read(file, "S", "long").size(), 257);
    EXPECT_EQ(read(file, "S", "long", ProfileFile::kSettingsBuffer).size(), 127);
}

TEST(ProfileFile, CuttingNeverSplitsACharacterOutsideTheBasicPlane)
{
    // 126 letters and then a character that takes two UTF-16 units.
    const QString value = QString(126, u'a') + QString::fromUtf8("\xF0\x9F\x98\x80") + u'b';
    const ProfileFile file = ProfileFile::fromText(QStringLiteral("[S]\nk=") + value);
    const QString cut = read(file, "S", "k", ProfileFile::kSettingsBuffer);
    EXPECT_EQ(cut, QString(126, u'a'));
}

TEST(ProfileFile, WritingAKeyKeepsEverythingElse)
{
    ProfileFile file = ProfileFile::fromText(QStringLiteral("; comment\n"
                                                            "[mru]\n"
                                                            "0file=/a.vrd\n"
                                                            "\n"
                                                            "[Window]\n"
                                                            "State=2\n"));
    file.setValue(QStringLiteral("MRU"), QStringLiteral("0FILE"), QStringLiteral("/b.vrd"));
    file.setValue(QStringLiteral("mru"), QStringLiteral("1file"), QStringLiteral("/c.vrd"));
    file.setValue(QStringLiteral("Global"), QStringLiteral("Top"), QStringLiteral("1440"));
    EXPECT_EQ(file.toBytes(), QByteArray("; comment\r\n"
                                         "[mru]\r\n"
                                         "0FILE=/b.vrd\r\n"
                                         "1file=/c.vrd\r\n"
                                         "\r\n"
                                         "[Window]\r\n"
                                         "State=2\r\n"
                                         "\r\n"
                                         "[Global]\r\n"
                                         "Top=1440\r\n"));
    EXPECT_EQ(read(file, "mru", "1file"), QStringLiteral("/c.vrd"));
}

TEST(ProfileFile, ReadsUtf8AndFallsBackToWindows1252)
{
    QTemporaryDir dir;
    const QString utf8 = dir.filePath(QStringLiteral("utf8.ini"));
    const QString legacy = dir.filePath(QStringLiteral("legacy.ini"));
    writeBytes(utf8, QByteArray("\xEF\xBB\xBF[S]\nk=Gr\xC3\xBC\xC3\x9F\xE2\x82\xAC\n"));
    writeBytes(legacy, QByteArray("[S]\r\nk=Gr\xFC\xDF\x80\r\n"));
    QString error;
    const auto a = ProfileFile::read(utf8, &error);
    const auto b = ProfileFile::read(legacy, &error);
    ASSERT_TRUE(a && b);
    const QString expected = QString::fromUtf8("Gr\xC3\xBC\xC3\x9F\xE2\x82\xAC");
    EXPECT_EQ(read(*a, "S", "k"), expected);
    EXPECT_EQ(read(*b, "S", "k"), expected);

    EXPECT_FALSE(ProfileFile::read(dir.filePath(QStringLiteral("missing.ini")), &error));
    EXPECT_FALSE(error.isEmpty());
}
