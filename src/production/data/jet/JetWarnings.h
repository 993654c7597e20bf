#pragma once

#include <QByteArray>
#include <QString>

namespace tabulor {

// Collects what libmdb prints while its calls run on this thread, from construction to
// destruction. libmdb reports the damage it meets (a page that is not where the table's map
// says, a row that points outside its page) by printing to stderr and carrying on; collected,
// the text becomes part of a message of ours instead. What other threads print meanwhile goes
// to stderr as before.
class JetWarnings
{
public:
    JetWarnings();
    ~JetWarnings();
    JetWarnings(const JetWarnings&) = delete;
    JetWarnings& operator=(const JetWarnings&) = delete;

    bool any() const { return !m_text.isEmpty(); }
    // The first thing printed, on one line, without libmdb's "warning:" or "error:" prefix.
    QString firstWarning() const;

    // Adds printed text to the collector of the calling thread; false when it has none.
    static bool collect(const char* data, size_t size);

private:
    QByteArray m_text;
    JetWarnings* m_outer;
};

} // namespace tabulor
