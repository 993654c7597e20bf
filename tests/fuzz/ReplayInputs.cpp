#include <QDir>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// Every file of the target's corpus and of the inputs it once failed on, through the same entry
// point as the fuzzer, without it: a crash, a sanitizer's report or a broken promise fails the
// test, in every build. Each file is named before it is read, so that the output of a test
// that crashed ends with the one at fault.
TEST(KeptInputs, AreReadWithoutFault)
{
    int count = 0;
    for (const char* folder : {TABULOR_FUZZ_CORPUS, TABULOR_FUZZ_REGRESSIONS}) {
        const QDir dir(QString::fromUtf8(folder));
        for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
            const QString path = dir.filePath(name);
            std::fprintf(stderr, "%s\n", qPrintable(path));
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
            const QByteArray bytes = file.readAll();
            EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                                             size_t(bytes.size())),
                      0)
                << qPrintable(path);
            ++count;
        }
    }
    EXPECT_GT(count, 0) << "no inputs in " << TABULOR_FUZZ_CORPUS;
}

} // namespace
