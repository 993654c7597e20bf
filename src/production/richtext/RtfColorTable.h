#pragma once

#include <QColor>

#include <array>
#include <optional>
#include <vector>

namespace tabulor {

// The colour table of an RTF document (\colortbl), filled entry by entry as it is read. An
// entry without a red, green or blue part is the automatic colour, as entry 0 always is.
class RtfColorTable
{
public:
    // \red, \green or \blue (part 0, 1 or 2) of the entry being read, clamped to 0-255.
    void setPart(int part, int value);
    // Whether the entry being read has a part yet.
    bool entryHasPart() const;
    // Ends the entry being read, at its ";" (the last entry may lack one).
    void endEntry();

    // The colour \cfN chooses; nullopt for the automatic colour or an entry not in the table.
    std::optional<QColor> color(int index) const;

private:
    std::vector<std::optional<QColor>> m_colors;
    std::array<std::optional<int>, 3> m_entry; // red, green and blue of the entry being read
};

} // namespace tabulor
