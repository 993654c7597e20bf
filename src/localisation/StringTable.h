#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

class QLocale;

namespace tabulor {

class CaptionRegistry;
struct DefinitionReadError;

// The message texts that every part of the system shows, in the order in which the string
// file's keys are tested against them. The enumerator names are the keys of the file.
enum class Message
{
    INVALIDDATATYPE,
    GENERATINGFULLREPORT,
    READYTOPRINT,
    PAGESON,
    PRESSOK,
    GENERATINGPAGE,
    COULDNOTGENERATEREPORT,
    CANNOTOPENDATABASE,
    LOOKFORIT,
    SAVECHANGES,
    UNTITLED,
    REPORT,
    NOREPORT,
    FROM,
    RECORDS,
    PAGES,
    OPENING,
    FORMATTINGREPORT,
    UPDATINGREPORT,
    SAVEASDEFAULT,
    CONNFAILED,
    DEFREPORTTITLE,
    DEFHEADER,
    DEFFOOTER,
    // Messages with places for the names and reasons that go into them: %1, %2, %3.
    STRINGFILEFAULT,
    STRINGFILEUNREADABLE,
    SETTINGSUNREADABLE,
    BADDEFAULTSTYLE,
    COULDNOTSAVESTYLE,
    COULDNOTSAVE,
    MISSINGKEY,
    INVALIDVALUE,
};

inline constexpr int kMessageCount = 32;

// What LoadStrings found wrong with the string file. Everything before the fault has been
// applied; the caller decides whether to show it.
struct StringFileError
{
    int line = 0; // 1-based line of the key line that has no value line
    QString key;
    // Why the file could not be read at all (it is no regular file, or too large); the line
    // and key are then unset.
    QString unreadable;
};

// The largest string file that is read; a real one holds a few hundred short texts.
inline constexpr qint64 kMaxStringFileBytes = 4 * 1024 * 1024;

class StringTable
{
public:
    // Starts with the built-in texts. The file is the one that defaultFilePath() finds unless
    // another path is set.
    StringTable();

    QString text(Message message) const;
    // A fault of the string file in the table's words, naming the file.
    QString faultMessage(const StringFileError& fault) const;
    // Why a definition could not be read, in the table's words.
    QString readErrorMessage(const DefinitionReadError& error) const;
    static QString builtInText(Message message);
    static QString keyName(Message message);

    // The string file in use; empty for none.
    QString filePath() const { return m_filePath; }
    void setFilePath(const QString& path) { m_filePath = path; }
    // TABULOR_STRINGS, else Kestrel.str in the folder of the library file, else in the
    // installed share folder, else the translation shipped for the user's language; empty
    // when none of them exists.
    static QString defaultFilePath();
    // Kestrel.str in the first of folders that holds one, else the translation that the folder
    // translations holds for locale's language (translations/de/Kestrel.str); empty for none.
    static QString findStringFile(const QStringList& folders, const QString& translations,
                                  const QLocale& locale);

    // Resets the message texts to the built-in ones and reads the string file over them. With
    // applyCaptions the caption keys are handed to the windows registered in captions.
    // Returns the fault that stopped the reading early, if any. A file that does not exist
    // leaves the built-in texts without a fault.
    [[nodiscard]] std::optional<StringFileError> LoadStrings(bool applyCaptions,
                                                             CaptionRegistry* captions = nullptr);

private:
    std::array<QString, kMessageCount> m_texts;
    QString m_filePath;
};

} // namespace tabulor
