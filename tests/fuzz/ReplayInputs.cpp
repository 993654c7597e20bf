#include <QDir>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// Every file of a folder through the same entry point as the fuzzer, without it: a crash, a
// sanitizer's report or a broken promise fails the test, in every build. Each file is named
// before it is read, so that the output of a test that crashed ends with the one at fault.
void replayFolder(const char* folder)
{
    const QDir dir(QString::fromUtf8(folder));
    const QStringList names = dir.entryList(QDir::Files, QDir::Name);
    if (names.isEmpty())
        GTEST_SKIP() << "no inputs in " << folder;
    for (const QString& name : names) {
        const QString path = dir.filePath(name);
        std::fprintf(stderr, "%s\n", qPrintable(path));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        const QByteArray bytes = file.readAll();
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                                         size_t(bytes.size())),
                  0)
            << qPrintable(path);
    }
}

TEST(KeptInputs, CorpusIsReadWithoutFault)
{
    replayFolder(TABULOR_FUZZ_CORPUS);
}

TEST(KeptInputs, InputsThatOnceFailedAreReadWithoutFault)
{
    replayFolder(TABULOR_FUZZ_REGRESSIONS);
}

} // namespace
