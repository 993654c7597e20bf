#include "production/base/ByteTextTable.h"

#include <algorithm>
#include <cstring>

namespace tabulor {

namespace {

constexpr quint64 kMultiplier = 0x9E3779B97F4A7C15ULL;

quint64 mix(quint64 value)
{
    value ^= value >> 32;
    value *= 0xD6E8FEB86659FD93ULL;
    value ^= value >> 32;
    return value;
}

} // namespace

quint64 ByteTextTable::hashOf(std::string_view text)
{
    // Eight bytes at a time, each block mixed into the running value.
    quint64 hash = text.size() * kMultiplier;
    const char* at = text.data();
    size_t left = text.size();
    while (left >= 8) {
        quint64 block;
        std::memcpy(&block, at, 8);
        hash = mix(hash ^ (block * kMultiplier));
        at += 8;
        left -= 8;
    }
    if (left > 0) {
        quint64 block = 0;
        std::memcpy(&block, at, left);
        hash = mix(hash ^ (block * kMultiplier));
    }
    return mix(hash);
}

size_t ByteTextTable::slotOf(std::string_view text, quint64 hash) const
{
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const quint32 held = m_slots[slot];
        if (held == 0)
            return slot;
        const Entry& entry = m_entries[held - 1];
        if (entry.hash == hash && entry.length == text.size() &&
            std::memcmp(m_bytes.data() + entry.offset, text.data(), text.size()) == 0)
            return slot;
    }
}

quint32 ByteTextTable::find(std::string_view text) const
{
    if (m_slots.empty())
        return kAbsent;
    const quint32 held = m_slots[slotOf(text, hashOf(text))];
    return held == 0 ? kAbsent : m_entries[held - 1].number;
}

qsizetype ByteTextTable::insert(std::string_view text, quint32 number)
{
    // At most half the slots are used, so that a lookup rarely looks past its own slot.
    if ((m_entries.size() + 1) * 2 > m_slots.size())
        grow();
    const quint64 hash = hashOf(text);
    const size_t slot = slotOf(text, hash);
    if (m_slots[slot] != 0)
        return m_slots[slot] - 1;
    m_entries.push_back(Entry{hash, m_bytes.size(), text.size(), number});
    m_bytes.append(text);
    m_slots[slot] = static_cast<quint32>(m_entries.size());
    return static_cast<qsizetype>(m_entries.size()) - 1;
}

std::string_view ByteTextTable::text(qsizetype entry) const
{
    const Entry& e = m_entries[static_cast<size_t>(entry)];
    return std::string_view(m_bytes).substr(e.offset, e.length);
}

void ByteTextTable::grow()
{
    m_slots.assign(std::max<size_t>(16, m_slots.size() * 2), 0);
    const size_t mask = m_slots.size() - 1;
    for (size_t e = 0; e < m_entries.size(); ++e) {
        size_t slot = m_entries[e].hash & mask;
        while (m_slots[slot] != 0)
            slot = (slot + 1) & mask;
        m_slots[slot] = static_cast<quint32>(e + 1);
    }
}

} // namespace tabulor
