#pragma once

#include "production/pdf/PdfSyntax.h"

#include <QSaveFile>
#include <QString>

#include <memory>
#include <string>
#include <vector>

struct libdeflate_compressor;

namespace tabulor {

// The file layer of a PDF: numbered objects written one after the other, the cross-reference
// table that finds them, and the trailer. Writes go to a temporary file beside the target that
// replaces it only when everything has been written, so a failure leaves an earlier file as it
// was. After the first failed write, further output is dropped and finish() reports the error.
class PdfOutput
{
public:
    PdfOutput();
    ~PdfOutput();
    PdfOutput(const PdfOutput&) = delete;
    PdfOutput& operator=(const PdfOutput&) = delete;

    // Creates the temporary file and writes the header.
    [[nodiscard]] bool open(const QString& path, QString* error);

    // A number for an object that is written later.
    int reserve();
    // Starts writing object number; its body goes into the returned buffer until endObject().
    PdfBuffer& beginObject(int number);
    void endObject();
    // A stream object compressed with Flate; entries are extra dictionary entries.
    void writeStream(int number, QByteArrayView data, QByteArrayView entries = {});

    bool failed() const { return !m_error.isEmpty(); }
    QString errorString() const { return m_error; }

    // Writes the cross-reference table and the trailer, then puts the file in place.
    [[nodiscard]] bool finish(int root, int info, QByteArrayView id, QString* error);
    // Removes the temporary file; the target stays as it was.
    void discard();

private:
    qint64 position() const { return m_flushed + m_out.size(); }
    void flush();
    void fail(const QString& reason);
    struct CompressorDeleter
    {
        void operator()(libdeflate_compressor* compressor) const;
    };
    std::unique_ptr<libdeflate_compressor, CompressorDeleter> m_compressor;
    std::string m_packed; // a stream compressed
    QString m_path;
    QSaveFile m_file;
    PdfBuffer m_out;
    qint64 m_flushed = 0;
    std::vector<qint64> m_offsets; // by object number; -1 while only reserved
    QString m_error;
};

} // namespace tabulor
