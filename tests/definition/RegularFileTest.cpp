#include "definition/RegularFile.h"
#include "definition/ProfileFile.h"

#include "TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace tabulor;
using namespace tabulor::test;

TEST(RegularFile, ReadsAFileUpToItsLimitAndRefusesALargerOne)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("ten.txt"));
    writeBytes(path, "0123456789");
    QString error;
    EXPECT_EQ(readRegularFile(path, 10, &error), QByteArray("0123456789"));

    EXPECT_EQ(readRegularFile(path, 9, &error), std::nullopt);
    EXPECT_EQ(error, QStringLiteral("'%1' is larger than 9 bytes, too large to be read").arg(path));
    EXPECT_EQ(readRegularFile(path, 0, &error), std::nullopt);

    // A definition or settings file of more than 64 MB is no such file (a sparse one here).
    const QString huge = dir.filePath(QStringLiteral("huge.vrd"));
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(kMaxProfileFileBytes + 1));
    file.close();
    EXPECT_EQ(ProfileFile::read(huge, &error), std::nullopt);
    EXPECT_EQ(error, QStringLiteral("'%1' is larger than 64 MB, too large to be read").arg(huge));
}

// What is not a file is refused before it is opened: a pipe with no writer would block and a
// device would be read until the memory ran out.
TEST(RegularFile, SaysWhyWhatIsNoRegularFileCannotBeRead)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing.vrd"));
    const QString pipe = dir.filePath(QStringLiteral("pipe.vrd"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const QString link = dir.filePath(QStringLiteral("link.vrd"));
    ASSERT_TRUE(QFile::link(missing, link));

    const std::pair<QString, QString> cases[] = {
        {missing, QStringLiteral("'%1' does not exist")},
        {link, QStringLiteral("'%1' does not exist")},
        {dir.path(), QStringLiteral("'%1' is a folder, not a file")},
        {pipe, QStringLiteral("'%1' is not a regular file (it is a device, pipe or socket)")},
        {QStringLiteral("/dev/zero"),
         QStringLiteral("'%1' is not a regular file (it is a device, pipe or socket)")},
    };
    for (const auto& [path, message] : cases) {
        QString error;
        EXPECT_EQ(readRegularFile(path, kMaxProfileFileBytes, &error), std::nullopt);
        EXPECT_EQ(error, message.arg(path));
        // Definition and settings files are read the same way.
        QString profileError;
        EXPECT_EQ(ProfileFile::read(path, &profileError), std::nullopt);
        EXPECT_EQ(profileError, error);
    }
}
