#pragma once

#include "production/pages/BackgroundPageSink.h"
#include "production/pages/ReportOutput.h"
#include "production/pdf/PdfPageSink.h"
#include "production/pdf/PdfWriter.h"

#include <QString>

#include <memory>
#include <optional>

namespace tabulor {

// A report as a PDF file, written by the direct writer. Streamed, each page goes to the file
// on a thread of its own as soon as it is laid out, so memory stays the same however long the
// report is; otherwise the complete document's pages are written at the end. The file appears
// only when everything was written; a file already there stays until then.
class PdfFileOutput : public ReportOutput
{
public:
    // title: the report's file name, shown by PDF viewers.
    PdfFileOutput(QString path, QString title);
    ~PdfFileOutput() override;

    [[nodiscard]] bool start(QString* error) override;
    PageSink* streamingSink() override;
    [[nodiscard]] bool finish(const PageDocument& document, QString* error) override;
    void discard() override;

private:
    QString m_path;
    QString m_title;
    std::unique_ptr<PdfWriter> m_writer;
    std::unique_ptr<PdfPageSink> m_sink;
    std::optional<BackgroundPageSink> m_background;
};

} // namespace tabulor
