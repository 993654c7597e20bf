#include "localisation/StringTable.h"

#include "definition/DefinitionFile.h"
#include "definition/RegularFile.h"
#include "definition/TextDecoding.h"
#include "localisation/CaptionKeys.h"
#include "localisation/CaptionRegistry.h"
#include "localisation/TextHelpers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLatin1String>
#include <QLocale>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tabulor {

namespace {

struct MessageEntry
{
    Message message;
    std::string_view key;
    std::string_view text;
};

// In the order of Message, which is also the order in which file keys are tested.
constexpr std::array<MessageEntry, kMessageCount> kMessages = {{
    {Message::INVALIDDATATYPE, "INVALIDDATATYPE", "Invalid Data File, please try another."},
    {Message::GENERATINGFULLREPORT, "GENERATINGFULLREPORT", "Generating full report..."},
    {Message::READYTOPRINT, "READYTOPRINT", "Ready to print."},
    {Message::PAGESON, "PAGESON", "page(s) on"},
    {Message::PRESSOK, "PRESSOK", "Please press OK to proceed."},
    {Message::GENERATINGPAGE, "GENERATINGPAGE", "Generating page"},
    {Message::COULDNOTGENERATEREPORT, "COULDNOTGENERATEREPORT", "Could not generate report."},
    {Message::CANNOTOPENDATABASE, "CANNOTOPENDATABASE", "Could not open the database."},
    {Message::LOOKFORIT, "LOOKFORIT", "Would you like to look for it?"},
    {Message::SAVECHANGES, "SAVECHANGES", "Do you want to save the changes made to"},
    {Message::UNTITLED, "UNTITLED", "Untitled"},
    {Message::REPORT, "REPORT", "Report"},
    {Message::NOREPORT, "NOREPORT", "No Report"},
    {Message::FROM, "FROM", "from"},
    {Message::RECORDS, "RECORDS", "records"},
    {Message::PAGES, "PAGES", "pages"},
    {Message::OPENING, "OPENING", "Opening"},
    {Message::FORMATTINGREPORT, "FORMATTINGREPORT", "Formatting Report"},
    {Message::UPDATINGREPORT, "UPDATINGREPORT", "Updating Report"},
    {Message::SAVEASDEFAULT, "SAVEASDEFAULT", "Would you like to save this style as your default?"},
    {Message::CONNFAILED, "CONNFAILED",
     "The connection to the database failed. Do you want to check the current connection "
     "information?"},
    {Message::DEFREPORTTITLE, "DEFREPORTTITLE", "[<rs>] Report Generated at <tt> on <dd>"},
    {Message::DEFHEADER, "DEFHEADER", "<db>|<rs>|Page <p> of <n>"},
    {Message::DEFFOOTER, "DEFFOOTER", " | |<tt>, <ddd>"},
    {Message::STRINGFILEFAULT, "STRINGFILEFAULT", "%1: the key '%2' on line %3 has no value."},
    {Message::STRINGFILEUNREADABLE, "STRINGFILEUNREADABLE", "%1; the built-in texts are used."},
    {Message::SETTINGSUNREADABLE, "SETTINGSUNREADABLE", "%1; the built-in style is used."},
    {Message::BADDEFAULTSTYLE, "BADDEFAULTSTYLE",
     "%1: %2 holds a value that is not valid; the default style was read up to there."},
    {Message::COULDNOTSAVESTYLE, "COULDNOTSAVESTYLE", "Could not save the default style to %1: %2"},
    {Message::COULDNOTSAVE, "COULDNOTSAVE", "Could not save %1: %2"},
    {Message::MISSINGKEY, "MISSINGKEY", "[%1] %2 is missing"},
    {Message::INVALIDVALUE, "INVALIDVALUE", "[%1] %2 = %3 is not a valid value"},
}};

constexpr bool inMessageOrder()
{
    for (std::size_t i = 0; i < kMessages.size(); ++i) {
        if (static_cast<std::size_t>(kMessages[i].message) != i)
            return false;
    }
    return true;
}
static_assert(inMessageOrder(), "kMessages must follow the order of Message");

const MessageEntry& entry(Message message)
{
    return kMessages[static_cast<std::size_t>(message)];
}

std::array<QString, kMessageCount> builtInTexts()
{
    std::array<QString, kMessageCount> texts;
    for (std::size_t i = 0; i < kMessages.size(); ++i)
        texts[i] = fromAscii(kMessages[i].text);
    return texts;
}

constexpr auto kFileName = "Kestrel.str";

// The folder of the library (or program) file that holds this code. The address asked about
// is that of a function private to this file, so that a program calling into the library
// cannot stand in for it.
QString codeFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&codeFolder), &info) == 0 || info.dli_fname == nullptr)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

} // namespace

StringTable::StringTable() : m_texts(builtInTexts()), m_filePath(defaultFilePath()) {}

QString StringTable::text(Message message) const
{
    return m_texts[static_cast<std::size_t>(message)];
}

QString StringTable::faultMessage(const StringFileError& fault) const
{
    if (!fault.unreadable.isEmpty())
        return text(Message::STRINGFILEUNREADABLE).arg(fault.unreadable);
    return text(Message::STRINGFILEFAULT).arg(m_filePath, fault.key, QString::number(fault.line));
}

QString StringTable::readErrorMessage(const DefinitionReadError& error) const
{
    if (error.value.isEmpty())
        return text(Message::MISSINGKEY).arg(error.section, error.key);
    return text(Message::INVALIDVALUE).arg(error.section, error.key, error.value);
}

QString StringTable::builtInText(Message message)
{
    return fromAscii(entry(message).text);
}

QString StringTable::keyName(Message message)
{
    return fromAscii(entry(message).key);
}

QString StringTable::defaultFilePath()
{
    if (qEnvironmentVariableIsSet("TABULOR_STRINGS"))
        return qEnvironmentVariable("TABULOR_STRINGS");
    return findStringFile({codeFolder(), QStringLiteral(TABULOR_DATADIR)},
                          QStringLiteral(TABULOR_DATADIR), QLocale());
}

QString StringTable::findStringFile(const QStringList& folders, const QString& translations,
                                    const QLocale& locale)
{
    for (const QString& folder : folders) {
        if (folder.isEmpty())
            continue;
        const QString path = QDir(folder).filePath(QLatin1String(kFileName));
        if (QFileInfo(path).isFile())
            return path;
    }
    // A translation shipped for the user's language: de_CH looks for de_CH, then de.
    const QString name = locale.name();
    for (const QString& language : {name, name.section(u'_', 0, 0)}) {
        const QString path =
            QDir(translations).filePath(language + u'/' + QLatin1String(kFileName));
        if (!language.isEmpty() && QFileInfo(path).isFile())
            return path;
    }
    return {};
}

std::optional<StringFileError> StringTable::LoadStrings(bool applyCaptions,
                                                        CaptionRegistry* captions)
{
    m_texts = builtInTexts();

    if (m_filePath.isEmpty() || !QFileInfo::exists(m_filePath))
        return std::nullopt;
    QString unreadable;
    const std::optional<QByteArray> bytes =
        readRegularFile(m_filePath, kMaxStringFileBytes, &unreadable);
    if (!bytes)
        return StringFileError{0, QString(), unreadable};
    const QStringList lines = splitLines(decodeText(*bytes));

    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = TrimBlanks(lines.at(i));
        if (!line.startsWith(u'*'))
            continue;
        const QString key = TrimSpaces(QStringView(line).sliced(1));
        if (i + 1 == lines.size())
            return StringFileError{static_cast<int>(i) + 1, key, QString()};
        const QString value = TrimBlanks(lines.at(++i));
        if (value.isEmpty())
            continue;

        const auto message = std::find_if(kMessages.begin(), kMessages.end(), [&](auto& m) {
            return key == QLatin1String(m.key.data(), static_cast<qsizetype>(m.key.size()));
        });
        if (message != kMessages.end()) {
            m_texts[static_cast<std::size_t>(message->message)] = value;
        } else if (applyCaptions && captions) {
            for (const CaptionKey& caption : findCaptionKeys(key))
                captions->apply(caption, value);
        }
    }
    return std::nullopt;
}

} // namespace tabulor
