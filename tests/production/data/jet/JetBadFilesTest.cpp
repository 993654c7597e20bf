#include "JetFixture.h"
#include "SqliteFixture.h"
#include "TestSupport.h"
#include "production/databases/OpenDatabase.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <unistd.h>

namespace tabulor::test {
namespace {

QString failure(const QString& path)
{
    QString error;
    EXPECT_FALSE(openDatabase(path, &error)) << path.toStdString();
    return error;
}

// Opens what opens and reads every record source of it to the end: damage may show anywhere.
void readEverything(const QString& path)
{
    QString error;
    const std::unique_ptr<DataSource> source = openDatabase(path, &error);
    if (!source) {
        EXPECT_FALSE(error.isEmpty());
        return;
    }
    for (const RecordSourceEntry& entry : source->recordSources()) {
        source->countRows(entry.name);
        const std::unique_ptr<Recordset> records =
            source->openRecordSource(entry.name, std::nullopt, &error);
        if (records)
            readRows(*records);
        else
            EXPECT_FALSE(error.isEmpty()) << entry.name.toStdString();
    }
}

TEST(JetBadFiles, ForeignEmptyAndCutFilesAreRefusedWithAMessage)
{
    QTemporaryDir dir;
    const QByteArray northwind = readBytes(sharedDataPath("jet4_Northwind.mdb"));
    const QByteArray nwind = readBytes(sharedDataPath("jet3_nwind.mdb"));
    QByteArray noise(8192, '\0');
    QRandomGenerator random(20240601);
    random.fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
    const QByteArray jetHeaderOnly = northwind.left(4096) + noise;

    const struct
    {
        const char* file;
        QByteArray bytes;
        const char* expected;
    } cases[] = {
        {"empty.mdb", {}, "not a database"},
        {"noise.mdb", noise, "not a database"},
        {"text.mdb", "Standard Jet DB, or so it says", "not a database"},
        {"header-and-noise.mdb", jetHeaderOnly, "damaged"},
        {"first-half.mdb", northwind.left(northwind.size() / 2), "damaged"},
        {"jet3-first-half.mdb", nwind.left(nwind.size() / 2), "damaged"},
        {"mid-page.mdb", northwind.left(northwind.size() - 100), "cut short"},
        {"first-page.accdb", readBytes(sharedDataPath("linkeeTest.accdb")).left(4096), "cut short"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const QString path = dir.filePath(c.file);
        writeBytes(path, c.bytes);
        const QString error = failure(path);
        EXPECT_TRUE(error.contains(c.expected)) << error.toStdString();
        EXPECT_TRUE(error.contains(path)) << error.toStdString();
    }
    EXPECT_TRUE(failure(dir.filePath("missing.mdb")).contains("does not exist"));
}

TEST(JetBadFiles, FileWithoutReadPermissionIsRefused)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    QTemporaryDir dir;
    const QString path = copyInto(dir, sharedDataPath("jet4_DateTestDatabase.mdb"));
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::WriteOwner));
    EXPECT_TRUE(failure(path).contains("cannot be read"));
}

TEST(JetBadFiles, DamagedPagesNeverCrashOrHang)
{
    // Copies of the small files with bytes overwritten in the pages libmdb walks: the object
    // table, table definitions, usage maps, rows and long values. Whatever opens is read to
    // the end; the checks are that nothing crashes, hangs or fails without a message.
    QTemporaryDir dir;
    QRandomGenerator random(7);
    for (const char* name :
         {"jet4_DateTestDatabase.mdb", "jet3_queryTestV1997.mdb", "ace12_linkerTestV2007.accdb"}) {
        const QByteArray original = readBytes(sharedDataPath(name));
        const int pageSize = original[0x14] == 0 ? 2048 : 4096;
        for (int round = 0; round < 12; ++round) {
            QByteArray bytes = original;
            // Page 0 holds the header, which is checked as a whole; damage goes after it.
            for (int hit = 0; hit < 24; ++hit) {
                const qsizetype at = pageSize + random.bounded(bytes.size() - pageSize);
                bytes[at] = char(random.bounded(256));
            }
            const QString path = dir.filePath(QStringLiteral("%1-%2").arg(round).arg(name));
            writeBytes(path, bytes);
            SCOPED_TRACE(path.toStdString());
            readEverything(path);
        }
    }
}

TEST(JetBadFiles, OriginalsAreLeftAsTheyWere)
{
    const QString path = sharedDataPath("jet4_Northwind.mdb");
    const QByteArray before = readBytes(path);
    readEverything(path);
    EXPECT_EQ(readBytes(path), before);
}

} // namespace
} // namespace tabulor::test
