#include "production/data/sqlite/SqliteMergedRecordset.h"

namespace tabulor {

SqliteMergedRecordset::SqliteMergedRecordset(std::unique_ptr<SqliteRecordset> first,
                                             std::unique_ptr<SqliteRecordset> second)
    : m_first(std::move(first)), m_second(std::move(second))
{
    pick();
}

void SqliteMergedRecordset::pick()
{
    if (!readError().isEmpty()) {
        m_current = nullptr;
        return;
    }
    if (m_first->atEnd() || m_second->atEnd()) {
        m_current = !m_first->atEnd()    ? m_first.get()
                    : !m_second->atEnd() ? m_second.get()
                                         : nullptr;
        return;
    }
    // Keys compare byte by byte, a shorter key first when one starts the other, as the engine
    // orders them; keys end in the row number, so no two are equal.
    m_current = m_first->sortKey() < m_second->sortKey() ? m_first.get() : m_second.get();
}

bool SqliteMergedRecordset::moveFirst()
{
    const bool first = m_first->moveFirst();
    const bool second = m_second->moveFirst();
    pick();
    return first || second;
}

bool SqliteMergedRecordset::moveNext()
{
    if (!m_current)
        return false;
    m_current->moveNext();
    pick();
    return m_current != nullptr;
}

QVariant SqliteMergedRecordset::value(int field) const
{
    return m_current ? m_current->value(field) : QVariant();
}

QString SqliteMergedRecordset::readError() const
{
    const QString first = m_first->readError();
    return first.isEmpty() ? m_second->readError() : first;
}

bool SqliteMergedRecordset::utf8Text(int field, std::string_view* text) const
{
    return m_current && m_current->utf8Text(field, text);
}

} // namespace tabulor
