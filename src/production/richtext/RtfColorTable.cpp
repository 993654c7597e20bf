#include "production/richtext/RtfColorTable.h"

#include <algorithm>

namespace tabulor {

void RtfColorTable::setPart(int part, int value)
{
    m_entry[size_t(part)] = std::clamp(value, 0, 255);
}

bool RtfColorTable::entryHasPart() const
{
    return std::any_of(m_entry.begin(), m_entry.end(), [](auto part) { return part.has_value(); });
}

void RtfColorTable::endEntry()
{
    const auto [red, green, blue] = m_entry;
    if (red || green || blue)
        m_colors.emplace_back(QColor(red.value_or(0), green.value_or(0), blue.value_or(0)));
    else
        m_colors.emplace_back(std::nullopt);
    m_entry = {};
}

std::optional<QColor> RtfColorTable::color(int index) const
{
    return index > 0 && size_t(index) < m_colors.size() ? m_colors[size_t(index)] : std::nullopt;
}

} // namespace tabulor
