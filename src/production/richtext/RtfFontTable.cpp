#include "production/richtext/RtfFontTable.h"

namespace tabulor {

void RtfFontTable::startEntry(int number)
{
    endEntry();
    m_entry.emplace(number, Font{});
}

void RtfFontTable::endEntry()
{
    if (!m_entry)
        return;
    m_entry->second.name = m_entry->second.name.trimmed();
    m_fonts.insert_or_assign(m_entry->first, std::move(m_entry->second));
    m_entry.reset();
}

void RtfFontTable::appendToEntryName(const QString& text)
{
    if (m_entry)
        m_entry->second.name += text;
}

void RtfFontTable::setEntryCodePage(int codePage)
{
    if (m_entry)
        m_entry->second.codePage = codePage;
}

std::optional<QString> RtfFontTable::family(int number) const
{
    const auto font = m_fonts.find(number);
    return font != m_fonts.end() && !font->second.name.isEmpty() ? std::optional(font->second.name)
                                                                 : std::nullopt;
}

int RtfFontTable::codePageOf(int number) const
{
    const auto font = m_fonts.find(number);
    return font != m_fonts.end() ? font->second.codePage : 0;
}

int RtfFontTable::entryCodePage() const
{
    return m_entry ? m_entry->second.codePage : 0;
}

} // namespace tabulor
