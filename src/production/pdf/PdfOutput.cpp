#include "production/pdf/PdfOutput.h"

#include <QFileInfo>

#include <libdeflate.h>

#include <cstring>
#include <string>

namespace tabulor {

namespace {

// Output is collected and handed to the file in pieces of this size.
constexpr qsizetype kFlushSize = 1 << 20;
// The fastest level: report pages are text in a few fonts, which even it packs well.
constexpr int kCompressionLevel = 1;

} // namespace

void PdfOutput::CompressorDeleter::operator()(libdeflate_compressor* compressor) const
{
    libdeflate_free_compressor(compressor);
}

PdfOutput::PdfOutput() : m_compressor(libdeflate_alloc_compressor(kCompressionLevel))
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
    if (!m_compressor) {
        fail(QStringLiteral("there is not enough memory to compress it"));
        return;
    }
    m_packed.resize(libdeflate_zlib_compress_bound(m_compressor.get(), size_t(data.size())));
    const size_t size = libdeflate_zlib_compress(
        m_compressor.get(), data.data(), size_t(data.size()), m_packed.data(), m_packed.size());
    if (size == 0)
        fail(QStringLiteral("the data could not be compressed"));
    PdfBuffer& out = beginObject(number);
    out << "<</Length " << qint64(size) << "/Filter/FlateDecode" << entries << ">>stream\n"
        << QByteArrayView(m_packed.data(), qsizetype(size)) << "\nendstream";
    endObject();
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
