#include "production/data/jet/JetWarnings.h"

#include <QStringList>

#include <mutex>

#include <cstdio>
#include <unistd.h>

namespace tabulor {

namespace {

thread_local JetWarnings* collector = nullptr;

// stderr is swapped for the collecting stream while any thread runs a libmdb call, and put
// back when the last one returns.
std::mutex swapMutex;
int collecting = 0;
FILE* originalStderr = nullptr;

ssize_t writeCollected(void*, const char* data, size_t size)
{
    if (JetWarnings::collect(data, size))
        return ssize_t(size);
    return ::write(STDERR_FILENO, data, size);
}

FILE* collectingStream()
{
    static FILE* const stream = [] {
        FILE* opened = fopencookie(nullptr, "w", {nullptr, writeCollected, nullptr, nullptr});
        if (opened)
            setvbuf(opened, nullptr, _IONBF, 0);
        return opened;
    }();
    return stream;
}

} // namespace

JetWarnings::JetWarnings() : m_outer(collector)
{
    collector = this;
    FILE* stream = collectingStream();
    const std::lock_guard lock(swapMutex);
    if (stream && collecting++ == 0) {
        originalStderr = stderr;
        stderr = stream;
    }
}

JetWarnings::~JetWarnings()
{
    {
        const std::lock_guard lock(swapMutex);
        if (collectingStream() && --collecting == 0)
            stderr = originalStderr;
    }
    collector = m_outer;
    if (m_outer)
        m_outer->m_text += m_text;
}

QString JetWarnings::firstWarning() const
{
    QString line = QString::fromLocal8Bit(m_text).section(u'\n', 0, 0).trimmed();
    for (const QLatin1String prefix : {QLatin1String("warning:"), QLatin1String("error:")}) {
        if (line.startsWith(prefix, Qt::CaseInsensitive))
            line = line.mid(prefix.size()).trimmed();
    }
    return line;
}

bool JetWarnings::collect(const char* data, size_t size)
{
    if (!collector)
        return false;
    collector->m_text.append(data, qsizetype(size));
    return true;
}

} // namespace tabulor
