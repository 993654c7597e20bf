#include "production/PdfOutput.h"

#include <QFileInfo>

#include <libdeflate.h>
#include <pthread.h>

#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace tabulor {

namespace {

// Output is collected and handed to the file in pieces of this size.
constexpr qsizetype kFlushSize = 1 << 20;
// The fastest level: report pages are text in a few fonts, which even it packs well.
constexpr int kCompressionLevel = 1;
// Streams given to the compressing thread and not yet written: enough to keep it busy, few
// enough to keep memory bounded. When the thread falls behind, the writer waits until it has
// caught up to a few streams, rather than waking up for each one.
constexpr size_t kMaxQueuedStreams = 8;
constexpr size_t kResumeQueuedStreams = 2;

} // namespace

// Compresses streams on a thread of its own while the caller goes on producing pages, and
// hands them back in the order they came. Each stream is compressed whole, in the zlib format
// that FlateDecode reads.
struct PdfOutput::Compressor
{
    struct Job
    {
        int number = 0;
        std::string data; // the stream's data, then its compressed form
        std::string entries;
        bool done = false;
        bool ok = false;
    };

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::unique_ptr<Job>> jobs; // in the order given; the front is written first
    size_t next = 0;                       // the first job not yet taken by the thread
    std::vector<std::unique_ptr<Job>> spare;
    bool stopping = false;
    std::thread thread;

    Compressor()
        : thread([this] {
              pthread_setname_np(pthread_self(), "tabulor-deflate");
              run();
          })
    {
    }
    ~Compressor()
    {
        {
            const std::lock_guard lock(mutex);
            stopping = true;
        }
        changed.notify_all();
        thread.join();
    }

    void run()
    {
        libdeflate_compressor* compressor = libdeflate_alloc_compressor(kCompressionLevel);
        std::string packed;
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return stopping || next < jobs.size(); });
            if (stopping)
                break;
            Job& job = *jobs[next++];
            lock.unlock();
            job.ok = compressor != nullptr;
            if (job.ok) {
                packed.resize(libdeflate_zlib_compress_bound(compressor, job.data.size()));
                const size_t size = libdeflate_zlib_compress(
                    compressor, job.data.data(), job.data.size(), packed.data(), packed.size());
                job.ok = size > 0;
                packed.resize(size);
                job.data.swap(packed);
            }
            lock.lock();
            job.done = true;
            changed.notify_all();
        }
        libdeflate_free_compressor(compressor);
    }

    // Queues a stream and returns how many are queued.
    size_t submit(int number, QByteArrayView data, QByteArrayView entries)
    {
        std::unique_ptr<Job> job;
        {
            const std::lock_guard lock(mutex);
            if (!spare.empty()) {
                job = std::move(spare.back());
                spare.pop_back();
            }
        }
        if (!job)
            job = std::make_unique<Job>();
        job->number = number;
        job->data.assign(data.data(), size_t(data.size()));
        job->entries.assign(entries.data(), size_t(entries.size()));
        job->done = job->ok = false;
        size_t queued = 0;
        {
            const std::lock_guard lock(mutex);
            jobs.push_back(std::move(job));
            queued = jobs.size();
        }
        changed.notify_all();
        return queued;
    }

    // The oldest job once it is compressed, waiting for it while more than `keep` jobs are
    // queued; nullptr otherwise. Give it back with recycle().
    std::unique_ptr<Job> take(size_t keep)
    {
        std::unique_lock lock(mutex);
        if (jobs.empty() || (jobs.size() <= keep && !jobs.front()->done))
            return nullptr;
        changed.wait(lock, [this] { return jobs.front()->done; });
        std::unique_ptr<Job> job = std::move(jobs.front());
        jobs.pop_front();
        --next;
        return job;
    }

    void recycle(std::unique_ptr<Job> job)
    {
        const std::lock_guard lock(mutex);
        spare.push_back(std::move(job));
    }
};

PdfOutput::PdfOutput() : m_compressor(std::make_unique<Compressor>())
{
    m_out.reserve(2 * kFlushSize);
    m_offsets.push_back(0); // object 0 heads the list of free objects
}

PdfOutput::~PdfOutput() = default;

bool PdfOutput::open(const QString& path, QString* error)
{
    m_path = path;
    m_file.setFileName(path);
    if (QFileInfo(path).isDir() || !m_file.open(QIODevice::WriteOnly)) {
        fail(QFileInfo(path).isDir() ? QStringLiteral("it is a folder") : m_file.errorString());
        if (error)
            *error = m_error;
        return false;
    }
    // The comment with bytes above 127 tells transfer programs that the file is binary.
    m_out << "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    return true;
}

void PdfOutput::fail(const QString& reason)
{
    if (m_error.isEmpty())
        m_error = QStringLiteral("Cannot write the PDF file \"%1\": %2").arg(m_path, reason);
}

int PdfOutput::reserve()
{
    m_offsets.push_back(-1);
    return int(m_offsets.size() - 1);
}

PdfBuffer& PdfOutput::beginObject(int number)
{
    m_offsets[size_t(number)] = position();
    m_out << number << " 0 obj\n";
    return m_out;
}

void PdfOutput::endObject()
{
    m_out << "\nendobj\n";
    if (m_out.size() >= kFlushSize)
        flush();
}

void PdfOutput::writeStream(int number, QByteArrayView data, QByteArrayView entries)
{
    const size_t queued = m_compressor->submit(number, data, entries);
    writeCompressed(queued > kMaxQueuedStreams ? kResumeQueuedStreams : queued);
}

void PdfOutput::writeCompressed(size_t keep)
{
    while (std::unique_ptr<Compressor::Job> job = m_compressor->take(keep)) {
        if (!job->ok)
            fail(QStringLiteral("the data could not be compressed"));
        PdfBuffer& out = beginObject(job->number);
        out << "<</Length " << qint64(job->data.size()) << "/Filter/FlateDecode"
            << QByteArrayView(job->entries) << ">>stream\n"
            << QByteArrayView(job->data) << "\nendstream";
        endObject();
        m_compressor->recycle(std::move(job));
    }
}

void PdfOutput::flush()
{
    if (m_out.size() == 0)
        return;
    if (!failed() && m_file.write(m_out.bytes().data(), m_out.size()) != m_out.size())
        fail(m_file.errorString());
    m_flushed += m_out.size();
    m_out.clear();
}

bool PdfOutput::finish(int root, int info, QByteArrayView id, QString* error)
{
    writeCompressed(0);
    const qint64 xref = position();
    m_out << "xref\n0 " << qint64(m_offsets.size()) << '\n';
    for (size_t i = 0; i < m_offsets.size(); ++i) {
        // Each entry is exactly 20 bytes; a number never written is a free object.
        char entry[] = "0000000000 00000 n \n";
        if (m_offsets[i] < 0 || i == 0) {
            entry[17] = 'f';
            if (i == 0)
                std::memcpy(entry + 11, "65535", 5);
        } else {
            qint64 offset = m_offsets[i];
            for (int digit = 9; digit >= 0; --digit, offset /= 10)
                entry[digit] = char('0' + offset % 10);
        }
        m_out << QByteArrayView(entry, 20);
        if (m_out.size() >= kFlushSize)
            flush();
    }
    m_out << "trailer\n<</Size " << qint64(m_offsets.size()) << "/Root " << root << " 0 R/Info "
          << info << " 0 R/ID[<";
    m_out.hex(id) << "><";
    m_out.hex(id) << ">]>>\nstartxref\n" << xref << "\n%%EOF\n";
    flush();
    if (!failed() && !m_file.commit())
        fail(m_file.errorString());
    if (failed()) {
        discard();
        if (error)
            *error = m_error;
        return false;
    }
    return true;
}

void PdfOutput::discard()
{
    if (m_file.isOpen()) {
        m_file.cancelWriting();
        (void)m_file.commit(); // with writing cancelled, this removes the temporary file
    }
}

} // namespace tabulor
