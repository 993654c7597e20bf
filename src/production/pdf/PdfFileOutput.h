#pragma once

#include "production/base/Export.h"
#include "production/pages/ReportOutput.h"

#include <QString>

#include <memory>

namespace tabulor {

// A report as a PDF file, written by the direct writer. Streamed, each page goes to the file
// on a thread of its own as soon as it is laid out, so memory stays the same however long the
// report is; otherwise the complete document's pages are written at the end. The file appears
// only when everything was written; a file already there stays until then.
class TABULOR_EXPORT PdfFileOutput : public ReportOutput
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
    struct Writing;
    QString m_path;
    QString m_title;
    std::unique_ptr<Writing> m_writing; // from start() until finished or discarded
};

} // namespace tabulor
