#pragma once

#include <QtGlobal>

#include <string>
#include <string_view>
#include <vector>

namespace tabulor {

// Distinct byte strings, each with a number of its own choosing, found again by their bytes.
// Made for the millions of lookups of a long report, where the strings are few and repeat:
// they live in one buffer, and a lookup costs a hash of the bytes and mostly one comparison.
class ByteTextTable
{
public:
    static constexpr quint32 kAbsent = 0xFFFFFFFF;

    // The number given to text, or kAbsent.
    quint32 find(std::string_view text) const;
    // Adds text with number when it is not there yet; the entry of text either way.
    qsizetype insert(std::string_view text, quint32 number);

    // Entries in the order they were added.
    qsizetype size() const { return static_cast<qsizetype>(m_entries.size()); }
    std::string_view text(qsizetype entry) const;

private:
    struct Entry
    {
        quint64 hash;
        size_t offset; // in m_bytes
        size_t length;
        quint32 number;
    };

    static quint64 hashOf(std::string_view text);
    // The slot that holds text, or the empty one where it would go.
    size_t slotOf(std::string_view text, quint64 hash) const;
    void grow();

    std::string m_bytes;
    std::vector<Entry> m_entries;
    std::vector<quint32> m_slots; // entry + 1; 0 for an empty slot
};

} // namespace tabulor
