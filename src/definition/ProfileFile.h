#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tabulor {

// An INI-layout file read by the classic profile-string rules: sections and keys are matched
// without regard to case, the first occurrence of a section or key wins, values are trimmed
// and lose one pair of surrounding double quotes, and a reader gets at most its buffer size
// less one characters. Writing a key replaces its first occurrence or adds it to its section;
// everything else in the file is kept as it was.
class ProfileFile
{
public:
    // Buffer sizes of the two readers: definition files and the settings file.
    static constexpr qsizetype kDefinitionBuffer = 258;
    static constexpr qsizetype kSettingsBuffer = 128;

    ProfileFile() = default;
    static ProfileFile fromText(const QString& text);
    // Null when the file cannot be read, with *error saying why: it does not exist, is no
    // regular file or is larger than kMaxProfileFileBytes (see readRegularFile).
    static std::optional<ProfileFile> read(const QString& path, QString* error);

    // The value of key in section cut to bufferSize - 1 characters; empty when missing.
    QString value(QStringView section, QStringView key, qsizetype bufferSize) const;
    bool contains(QStringView section, QStringView key) const;

    void setValue(const QString& section, const QString& key, const QString& value);

    // The file's text with CRLF line ends, as UTF-8.
    QByteArray toBytes() const;
    [[nodiscard]] bool write(const QString& path, QString* error) const;

private:
    struct Location
    {
        qsizetype line = -1;
        QString value;
    };
    struct Section
    {
        qsizetype headerLine = -1;
        qsizetype lastLine = -1; // last non-blank line that belongs to the section
        QHash<QString, Location> keys;
    };

    void index();
    const Location* find(QStringView section, QStringView key) const;

    QStringList m_lines;
    QHash<QString, Section> m_sections; // by case-folded name; the first occurrence
};

} // namespace tabulor
