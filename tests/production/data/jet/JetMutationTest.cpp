#include "JetFixture.h"
#include "SqliteFixture.h"
#include "TestSupport.h"
#include "production/databases/OpenDatabase.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tabulor::test {
namespace {

using namespace std::chrono_literals;

// How long one damaged file may take to be opened and read to the end. The undamaged files
// take milliseconds; the margin is for sanitizer builds on a busy machine.
constexpr auto Watchdog = 20s;

// Opens the file, lists its record sources and reads each to the end. Returns whether every
// refusal came with a message.
bool readWhatOpens(const QString& path)
{
    QString error;
    const std::unique_ptr<DataSource> source = openDatabase(path, &error);
    if (!source)
        return !error.isEmpty();
    bool explained = true;
    for (const RecordSourceEntry& entry : source->recordSources()) {
        source->countRows(entry.name);
        error.clear();
        const std::unique_ptr<Recordset> records =
            source->openRecordSource(entry.name, std::nullopt, &error);
        if (records)
            readRows(*records);
        else
            explained = explained && !error.isEmpty();
    }
    return explained;
}

enum class Outcome
{
    ReadOrRefused,
    Unexplained,
    Crashed,
    Hung
};

// Reads the file in a child process, so that a crash or an endless loop inside the library is
// caught and named instead of taking the test run with it.
Outcome readInChild(const QString& path)
{
    const pid_t child = fork();
    if (child == 0) {
        // libmdb reports much of the damage it meets on the standard error; none of it matters.
        if (const int null = open("/dev/null", O_WRONLY); null >= 0)
            dup2(null, STDERR_FILENO);
        _exit(readWhatOpens(path) ? 0 : 1);
    }
    if (child < 0)
        return Outcome::Crashed;
    const auto deadline = std::chrono::steady_clock::now() + Watchdog;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return Outcome::Hung;
        }
        std::this_thread::sleep_for(2ms);
    }
    if (!WIFEXITED(status))
        return Outcome::Crashed;
    return WEXITSTATUS(status) == 0 ? Outcome::ReadOrRefused : Outcome::Unexplained;
}

const char* describe(Outcome outcome)
{
    switch (outcome) {
    case Outcome::ReadOrRefused:
        return "read or refused";
    case Outcome::Unexplained:
        return "refused without a message";
    case Outcome::Crashed:
        return "crashed";
    case Outcome::Hung:
        return "hung";
    }
    return "";
}

// Jet 3 files with random bytes changed anywhere past the header's signature, some in a few
// places, some in many, some with short runs overwritten. The seed is fixed so that a failure
// repeats; TABULOR_JET_MUTATIONS runs more and TABULOR_JET_SEED others.
TEST(JetMutations, DamagedJet3FilesAreReadOrRefusedButNeverHang)
{
    struct Original
    {
        const char* name;
        QByteArray bytes;
    };
    const Original originals[] = {
        {"jet3_queryTestV1997.mdb", readBytes(sharedDataPath("jet3_queryTestV1997.mdb"))},
        {"jet3_nwind.mdb", readBytes(sharedDataPath("jet3_nwind.mdb"))},
    };
    constexpr qsizetype PageSize = 2048;
    constexpr qsizetype Signature = 0x15;
    const int asked = qEnvironmentVariableIntValue("TABULOR_JET_MUTATIONS");
    const int mutations = asked > 0 ? asked : 200;
    const quint32 seed = qEnvironmentVariableIsSet("TABULOR_JET_SEED")
                             ? quint32(qEnvironmentVariableIntValue("TABULOR_JET_SEED"))
                             : 20240612u;
    std::mt19937 random(seed);
    const auto below = [&](qsizetype n) { return qsizetype(random() % std::max<qsizetype>(n, 1)); };

    QTemporaryDir dir;
    for (int i = 0; i < mutations; ++i) {
        // The small file most of the time: its pages are few, so damage lands in the catalog.
        const Original& original = originals[i % 24 == 23 ? 1 : 0];
        QByteArray bytes = original.bytes;
        // Damage mostly within the first pages, where the catalog and table definitions live.
        const qsizetype span = below(2) ? std::min(bytes.size(), 24 * PageSize) : bytes.size();
        for (int edits = 1 + int(below(i % 2 ? 64 : 6)); edits > 0; --edits) {
            const qsizetype at = Signature + below(span - Signature);
            switch (below(4)) {
            case 0:
                bytes[at] = char(random());
                break;
            case 1:
                bytes[at] = char(bytes[at] ^ (1 << below(8)));
                break;
            case 2:
                // A page number or count: a small value, zero or all bits set.
                bytes[at] = char(below(3) == 0 ? 0xff : below(3) == 0 ? 0 : below(16));
                break;
            default: {
                const qsizetype length = std::min<qsizetype>(below(64), bytes.size() - at);
                for (qsizetype k = 0; k < length; ++k)
                    bytes[at + k] = char(random());
                break;
            }
            }
        }
        const QString path = dir.filePath(QStringLiteral("mutation-%1.mdb").arg(i));
        writeBytes(path, bytes);
        const Outcome outcome = readInChild(path);
        EXPECT_EQ(outcome, Outcome::ReadOrRefused)
            << original.name << " mutation " << i << " (seed " << seed << ") was "
            << describe(outcome) << "; the file is kept at " << path.toStdString();
        if (outcome == Outcome::ReadOrRefused)
            QFile::remove(path);
        else
            dir.setAutoRemove(false);
    }
}

} // namespace
} // namespace tabulor::test
