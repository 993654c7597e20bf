#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// Every file in the folders the target keeps inputs in: its corpus and the inputs it once
// failed on.
std::vector<std::string> keptInputs()
{
    std::vector<std::string> paths;
    for (const char* folder : {TABULOR_FUZZ_CORPUS, TABULOR_FUZZ_REGRESSIONS}) {
        const QDir dir(QString::fromUtf8(folder));
        for (const QString& name : dir.entryList(QDir::Files, QDir::Name))
            paths.push_back(dir.filePath(name).toStdString());
    }
    return paths;
}

class KeptInput : public ::testing::TestWithParam<std::string>
{
};

// Through the same entry point as the fuzzer, without it: a crash, a sanitizer's report or a
// broken promise fails the test, in every build.
TEST_P(KeptInput, IsReadWithoutFault)
{
    QFile file(QString::fromStdString(GetParam()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << GetParam();
    const QByteArray bytes = file.readAll();
    EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                                     size_t(bytes.size())),
              0);
}

std::string testName(const ::testing::TestParamInfo<std::string>& info)
{
    // corpus/NAME/file or regressions/NAME/file
    const QStringList parts = QString::fromStdString(info.param).split(u'/');
    std::string name = (parts.value(parts.size() - 3) + u'_' + parts.last()).toStdString();
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Fuzz, KeptInput, ::testing::ValuesIn(keptInputs()), testName);

} // namespace
