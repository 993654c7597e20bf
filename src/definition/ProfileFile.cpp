#include "definition/ProfileFile.h"

#include "definition/AtomicSave.h"
#include "definition/RegularFile.h"
#include "definition/TextDecoding.h"

namespace tabulor {

namespace {

QString folded(QStringView name)
{
    return name.trimmed().toString().toCaseFolded();
}

// A value ends at a NUL; blanks at its ends and one pair of enclosing quotes are taken off.
QString unquoted(QString value)
{
    const qsizetype nul = value.indexOf(QChar(u'\0'));
    if (nul >= 0)
        value.truncate(nul);
    value = value.trimmed();
    if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
        value = value.mid(1, value.size() - 2);
    return value;
}

// Cuts text to at most length characters without splitting a surrogate pair; a cut text loses
// the blanks it then ends with, as every value read does.
QString cut(const QString& text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    qsizetype end = length;
    if (end > 0 && text.at(end - 1).isHighSurrogate())
        --end;
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    return text.left(end);
}

std::optional<QString> sectionName(const QString& line)
{
    const QString trimmed = line.trimmed();
    if (!trimmed.startsWith(u'['))
        return std::nullopt;
    const qsizetype close = trimmed.indexOf(u']');
    if (close < 0)
        return std::nullopt;
    return trimmed.mid(1, close - 1).trimmed();
}

} // namespace

ProfileFile ProfileFile::fromText(const QString& text)
{
    ProfileFile file;
    file.m_lines = splitLines(text);
    file.index();
    return file;
}

std::optional<ProfileFile> ProfileFile::read(const QString& path, QString* error)
{
    const std::optional<QByteArray> bytes = readRegularFile(path, kMaxProfileFileBytes, error);
    if (!bytes)
        return std::nullopt;
    return fromText(decodeText(*bytes));
}

void ProfileFile::index()
{
    m_sections.clear();
    Section* current = nullptr;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        const QString& line = m_lines.at(i);
        if (const auto name = sectionName(line)) {
            const QString key = folded(*name);
            current = m_sections.contains(key) ? nullptr : &m_sections[key];
            if (current) {
                current->headerLine = i;
                current->lastLine = i;
            }
            continue;
        }
        if (!current || line.trimmed().isEmpty())
            continue;
        current->lastLine = i;
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = folded(QStringView(line).left(equals));
        if (!current->keys.contains(key))
            current->keys.insert(key, Location{i, unquoted(line.mid(equals + 1))});
    }
}

const ProfileFile::Location* ProfileFile::find(QStringView section, QStringView key) const
{
    const auto s = m_sections.constFind(folded(section));
    if (s == m_sections.cend())
        return nullptr;
    const auto k = s->keys.constFind(folded(key));
    return k == s->keys.cend() ? nullptr : &*k;
}

QString ProfileFile::value(QStringView section, QStringView key, qsizetype bufferSize) const
{
    const Location* location = find(section, key);
    return location ? cut(location->value, bufferSize - 1) : QString();
}

bool ProfileFile::contains(QStringView section, QStringView key) const
{
    return find(section, key) != nullptr;
}

void ProfileFile::setValue(const QString& section, const QString& key, const QString& value)
{
    const QString line = key + u'=' + value;
    if (const Location* location = find(section, key)) {
        m_lines[location->line] = line;
    } else if (const auto s = m_sections.constFind(folded(section)); s != m_sections.cend()) {
        m_lines.insert(s->lastLine + 1, line);
    } else {
        if (!m_lines.isEmpty() && !m_lines.last().trimmed().isEmpty())
            m_lines.append(QString());
        m_lines.append(u'[' + section + u']');
        m_lines.append(line);
    }
    index();
}

QByteArray ProfileFile::toBytes() const
{
    QByteArray bytes;
    for (const QString& line : m_lines) {
        bytes += line.toUtf8();
        bytes += "\r\n";
    }
    return bytes;
}

bool ProfileFile::write(const QString& path, QString* error) const
{
    return saveAtomically(path, toBytes(), error);
}

} // namespace tabulor
