#include "localisation/StringTable.h"

#include "definition/DefinitionFile.h"
#include "localisation/CaptionKeys.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tabulor {
namespace {

// A string table reading a file of the test's own making.
class StringFileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_table.setFilePath(m_dir.filePath(QStringLiteral("Kestrel.str")));
    }

    void write(const QByteArray& bytes) { test::writeBytes(m_table.filePath(), bytes); }

    std::optional<StringFileError> load(const QByteArray& bytes, bool applyCaptions = false)
    {
        write(bytes);
        return m_table.LoadStrings(applyCaptions);
    }

    QTemporaryDir m_dir;
    StringTable m_table;
};

void expectAllBuiltIn(const StringTable& table)
{
    for (int i = 0; i < kMessageCount; ++i) {
        const auto message = static_cast<Message>(i);
        EXPECT_EQ(table.text(message), StringTable::builtInText(message))
            << StringTable::keyName(message).toStdString();
    }
}

TEST_F(StringFileTest, MissingFileLeavesTheBuiltInTexts)
{
    EXPECT_EQ(m_table.LoadStrings(true), std::nullopt);
    expectAllBuiltIn(m_table);
    EXPECT_EQ(m_table.text(Message::DEFREPORTTITLE),
              QStringLiteral("[<rs>] Report Generated at <tt> on <dd>"));
    EXPECT_EQ(m_table.text(Message::DEFHEADER), QStringLiteral("<db>|<rs>|Page <p> of <n>"));
    EXPECT_EQ(m_table.text(Message::DEFFOOTER), QStringLiteral(" | |<tt>, <ddd>"));
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("Untitled"));

    m_table.setFilePath(QString());
    EXPECT_EQ(m_table.LoadStrings(false), std::nullopt);
    expectAllBuiltIn(m_table);
}

// A folder, a device or a pipe named as the string file is told at once (a pipe would wait for
// a writer, a device never end), as is a file too large to be one; the built-in texts stay.
TEST_F(StringFileTest, WhatIsNoStringFileIsToldAndTheBuiltInTextsStay)
{
    const QString pipe = m_dir.filePath(QStringLiteral("pipe.str"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const QString huge = m_dir.filePath(QStringLiteral("huge.str"));
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(kMaxStringFileBytes + 1));
    file.close();

    for (const QString& path : {m_dir.path(), pipe, QStringLiteral("/dev/zero"), huge}) {
        m_table.setFilePath(path);
        const auto error = m_table.LoadStrings(false);
        ASSERT_TRUE(error.has_value()) << path.toStdString();
        const QString message = m_table.faultMessage(*error);
        EXPECT_TRUE(message.startsWith(u'\'' + path + u'\'')) << message.toStdString();
        EXPECT_TRUE(message.endsWith(QStringLiteral("; the built-in texts are used.")));
        expectAllBuiltIn(m_table);
    }
    m_table.setFilePath(m_dir.path());
    EXPECT_EQ(m_table.faultMessage(*m_table.LoadStrings(false)),
              QStringLiteral("'%1' is a folder, not a file; the built-in texts are used.")
                  .arg(m_dir.path()));
}

TEST_F(StringFileTest, EveryMessageKeyIsReadIntoItsOwnText)
{
    const char* const keys[] = {"INVALIDDATATYPE",
                                "GENERATINGFULLREPORT",
                                "READYTOPRINT",
                                "PAGESON",
                                "PRESSOK",
                                "GENERATINGPAGE",
                                "COULDNOTGENERATEREPORT",
                                "CANNOTOPENDATABASE",
                                "LOOKFORIT",
                                "SAVECHANGES",
                                "UNTITLED",
                                "REPORT",
                                "NOREPORT",
                                "FROM",
                                "RECORDS",
                                "PAGES",
                                "OPENING",
                                "FORMATTINGREPORT",
                                "UPDATINGREPORT",
                                "SAVEASDEFAULT",
                                "CONNFAILED",
                                "DEFREPORTTITLE",
                                "DEFHEADER",
                                "DEFFOOTER",
                                "STRINGFILEFAULT",
                                "STRINGFILEUNREADABLE",
                                "SETTINGSUNREADABLE",
                                "BADDEFAULTSTYLE",
                                "COULDNOTSAVESTYLE",
                                "COULDNOTSAVE",
                                "MISSINGKEY",
                                "INVALIDVALUE"};
    static_assert(std::size(keys) == kMessageCount);
    QByteArray file = "Translation of every message\r\n";
    for (std::size_t i = 0; i < std::size(keys); ++i)
        file +=
            QByteArray("*") + keys[i] + "\r\ntext " + QByteArray::number(qulonglong(i)) + "\r\n";

    EXPECT_EQ(load(file), std::nullopt);
    for (int i = 0; i < kMessageCount; ++i) {
        EXPECT_EQ(StringTable::keyName(static_cast<Message>(i)), QLatin1String(keys[i]));
        EXPECT_EQ(m_table.text(static_cast<Message>(i)), QStringLiteral("text %1").arg(i));
    }
}

// The messages that carry names and reasons are translated too, the places of the names
// moving with the language; a fault of the file is told in the texts read before it.
TEST_F(StringFileTest, MessagesWithNamesInThemAreTranslated)
{
    const auto fault = load("*STRINGFILEFAULT\nZeile %3 von %1: Schl\xfc\x73sel %2 ohne Wert\n"
                            "*INVALIDVALUE\n%2 = %3 in [%1] ist kein g\xfcltiger Wert\n"
                            "*REPORT\n");
    ASSERT_TRUE(fault.has_value());
    EXPECT_EQ(
        m_table.faultMessage(*fault),
        QStringLiteral("Zeile 5 von %1: Schl\u00fcssel REPORT ohne Wert").arg(m_table.filePath()));
    EXPECT_EQ(m_table.readErrorMessage(
                  {QStringLiteral("GlobalInfo"), QStringLiteral("Columns"), QStringLiteral("x")}),
              QStringLiteral("Columns = x in [GlobalInfo] ist kein g\u00fcltiger Wert"));
    EXPECT_EQ(
        m_table.readErrorMessage({QStringLiteral("GlobalInfo"), QStringLiteral("Columns"), {}}),
        QStringLiteral("[GlobalInfo] Columns is missing"));
}

TEST_F(StringFileTest, EmptyValueDropsTheKeyAndReadingGoesOnWithTheNextLine)
{
    EXPECT_EQ(load("*UNTITLED\n \t \n*REPORT\nBericht\n*PAGES\n\nSeiten\n"), std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), StringTable::builtInText(Message::UNTITLED));
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Bericht"));
    EXPECT_EQ(m_table.text(Message::PAGES), StringTable::builtInText(Message::PAGES));
}

TEST_F(StringFileTest, LineAfterAKeyLineIsItsValueEvenWhenItIsAKeyLine)
{
    EXPECT_EQ(load("*UNTITLED\n*REPORT\nBericht\n"), std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("*REPORT"));
    EXPECT_EQ(m_table.text(Message::REPORT), StringTable::builtInText(Message::REPORT));
}

TEST_F(StringFileTest, KeysMatchExactlyAfterTheirSpacesAreTrimmed)
{
    EXPECT_EQ(load("*untitled\nsans titre\n"
                   "*  PAGES  \nSeiten\n"
                   "*\tFROM\nvon\n"
                   "*NOTAKEY\nwhatever\n"
                   "  \t*RECORDS\t\nDatens\xC3\xA4tze\n"),
              std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), StringTable::builtInText(Message::UNTITLED));
    EXPECT_EQ(m_table.text(Message::PAGES), QStringLiteral("Seiten"));
    EXPECT_EQ(m_table.text(Message::FROM), StringTable::builtInText(Message::FROM));
    EXPECT_EQ(m_table.text(Message::RECORDS), QStringLiteral("Datens\u00E4tze"));
}

TEST_F(StringFileTest, LastOccurrenceOfAKeyWins)
{
    EXPECT_EQ(load("*REPORT\nErster\n; a comment\n*REPORT\nZweiter\n"), std::nullopt);
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Zweiter"));
}

TEST_F(StringFileTest, ValueLosesBlanksAtBothEndsButKeepsInnerOnes)
{
    EXPECT_EQ(load("*DEFFOOTER\n \t <p> |\t| <tt>  \t\n"), std::nullopt);
    EXPECT_EQ(m_table.text(Message::DEFFOOTER), QStringLiteral("<p> |\t| <tt>"));
}

TEST_F(StringFileTest, KeyOnTheLastLineStopsReadingWithAnError)
{
    const auto error = load("Heading\r\n*UNTITLED\r\nOhne Titel\r\n\r\n*REPORT\r\n");
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->line, 5);
    EXPECT_EQ(error->key, QStringLiteral("REPORT"));
    EXPECT_EQ(m_table.faultMessage(*error),
              m_table.filePath() + QStringLiteral(": the key 'REPORT' on line 5 has no value."));
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("Ohne Titel"));
    EXPECT_EQ(m_table.text(Message::REPORT), StringTable::builtInText(Message::REPORT));

    const auto unterminated = load("*UNTITLED\nOhne Titel\n* lost key ");
    ASSERT_TRUE(unterminated.has_value());
    EXPECT_EQ(unterminated->line, 3);
    EXPECT_EQ(unterminated->key, QStringLiteral("lost key"));

    // An empty last line is a value line, so the file is complete.
    EXPECT_EQ(load("*UNTITLED\nOhne Titel\n*REPORT\n\n"), std::nullopt);
}

TEST_F(StringFileTest, EveryLoadStartsAgainFromTheBuiltInTexts)
{
    ASSERT_EQ(load("*UNTITLED\nOhne Titel\n*REPORT\nBericht\n"), std::nullopt);
    ASSERT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("Ohne Titel"));

    EXPECT_EQ(load("*REPORT\nBericht\n"), std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), StringTable::builtInText(Message::UNTITLED));
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Bericht"));

    // Without captions a file of caption keys only changes nothing, yet still resets.
    EXPECT_EQ(load("*mmFile\n&Datei\n*sptAlignmentList\nLinks|Mitte|Rechts\n"), std::nullopt);
    expectAllBuiltIn(m_table);
}

TEST_F(StringFileTest, ReadsWindows1252AndUtf8WithAnyLineEnding)
{
    // Windows-1252, old Mac line endings
    EXPECT_EQ(load("*UNTITLED\rSans titre \xE9t\xE9\r*PAGESON\rpage(s) \x80 \x93ok\x94\r"),
              std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("Sans titre \u00E9t\u00E9"));
    EXPECT_EQ(m_table.text(Message::PAGESON), QStringLiteral("page(s) \u20AC \u201Cok\u201D"));

    // UTF-8 with a byte-order mark, mixed line endings
    EXPECT_EQ(load("\xEF\xBB\xBF*UNTITLED\r\n\xE7\x84\xA1\xE9\xA1\x8C\n*REPORT\r"
                   "Gr\xC3\xB6\xC3\x9F"
                   "e\n"),
              std::nullopt);
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("\u7121\u984C"));
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Gr\u00F6\u00DFe"));
}

// Sets or clears TABULOR_STRINGS for one test.
class StringsVariable
{
public:
    explicit StringsVariable(const QString* value)
        : m_saved(qgetenv("TABULOR_STRINGS")),
          m_wasSet(qEnvironmentVariableIsSet("TABULOR_STRINGS"))
    {
        if (value)
            qputenv("TABULOR_STRINGS", value->toLocal8Bit());
        else
            qunsetenv("TABULOR_STRINGS");
    }
    ~StringsVariable()
    {
        if (m_wasSet)
            qputenv("TABULOR_STRINGS", m_saved);
        else
            qunsetenv("TABULOR_STRINGS");
    }

private:
    QByteArray m_saved;
    bool m_wasSet;
};

TEST(StringFilePath, VariableNamesTheFileEvenWhenItDoesNotExist)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("deutsch.str"));
    const StringsVariable variable(&path);
    EXPECT_EQ(StringTable::defaultFilePath(), path);

    StringTable table;
    EXPECT_EQ(table.filePath(), path);
    EXPECT_EQ(table.LoadStrings(false), std::nullopt);
    expectAllBuiltIn(table);

    test::writeBytes(path, "*UNTITLED\nOhne Titel\n");
    EXPECT_EQ(table.LoadStrings(false), std::nullopt);
    EXPECT_EQ(table.text(Message::UNTITLED), QStringLiteral("Ohne Titel"));
}

TEST(StringFilePath, FileBesideTheLibraryIsFound)
{
    const StringsVariable variable(nullptr);
    const QString path = QDir(QStringLiteral(TABULOR_LIBRARY_DIR)).filePath("Kestrel.str");
    ASSERT_FALSE(QFile::exists(path)) << "left over from an earlier run: " << path.toStdString();
    const QString withoutIt = StringTable::defaultFilePath();
    EXPECT_NE(withoutIt, path);

    test::writeBytes(path, "*UNTITLED\nOhne Titel\n");
    const QString withIt = StringTable::defaultFilePath();
    QFile::remove(path);
    EXPECT_EQ(withIt, path);
}

TEST(StringFilePath, TheUsersLanguagePicksAShippedTranslationUnlessAFileIsGiven)
{
    QTemporaryDir beside;
    QTemporaryDir shipped;
    ASSERT_TRUE(QDir(shipped.path()).mkpath(QStringLiteral("de")));
    ASSERT_TRUE(QDir(shipped.path()).mkpath(QStringLiteral("fr_CA")));
    test::writeBytes(shipped.filePath(QStringLiteral("de/Kestrel.str")), "*UNTITLED\nUnbenannt\n");
    test::writeBytes(shipped.filePath(QStringLiteral("fr_CA/Kestrel.str")),
                     "*UNTITLED\nSans nom\n");
    const auto find = [&](const char* locale) {
        return StringTable::findStringFile({beside.path()}, shipped.path(),
                                           QLocale(QString::fromLatin1(locale)));
    };
    EXPECT_EQ(find("de_CH"), shipped.filePath(QStringLiteral("de/Kestrel.str")));
    EXPECT_EQ(find("fr_CA"), shipped.filePath(QStringLiteral("fr_CA/Kestrel.str")));
    EXPECT_EQ(find("fr_FR"), QString()) << "only Canada has French here";
    EXPECT_EQ(find("C"), QString());

    test::writeBytes(beside.filePath(QStringLiteral("Kestrel.str")), "*UNTITLED\nOhne Titel\n");
    EXPECT_EQ(find("de_DE"), beside.filePath(QStringLiteral("Kestrel.str")));
}

// Every shipped translation names each message and caption key once and no other key, so that
// nothing is left in English and no key is misspelt.
TEST(ShippedTranslations, EveryKeyIsTranslatedAndTheFileReadsWithoutFault)
{
    QSet<QString> known;
    for (int i = 0; i < kMessageCount; ++i)
        known.insert(StringTable::keyName(static_cast<Message>(i)));
    for (const CaptionKey& key : captionKeys())
        known.insert(QString::fromLatin1(key.name.data(), qsizetype(key.name.size())));

    for (const char* language : {"de", "fr"}) {
        SCOPED_TRACE(language);
        const QString path = StringTable::findStringFile(
            {}, QStringLiteral(TABULOR_TRANSLATIONS_DIR), QLocale(QString::fromLatin1(language)));
        ASSERT_FALSE(path.isEmpty());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QSet<QString> named;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith('*')) {
                const QString key = QString::fromUtf8(line.mid(1)).trimmed();
                EXPECT_TRUE(known.contains(key)) << "unknown key " << key.toStdString();
                EXPECT_FALSE(named.contains(key)) << "twice: " << key.toStdString();
                named.insert(key);
            }
        }
        EXPECT_EQ(named, known);

        StringTable table;
        table.setFilePath(path);
        EXPECT_EQ(table.LoadStrings(false), std::nullopt);
        EXPECT_NE(table.text(Message::UNTITLED), StringTable::builtInText(Message::UNTITLED));
        EXPECT_TRUE(table.text(Message::DEFHEADER).contains(QStringLiteral("<p>")));
    }
}

} // namespace
} // namespace tabulor
