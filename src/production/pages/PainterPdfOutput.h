#pragma once

#include "production/pages/ReportOutput.h"

#include <QString>

namespace tabulor {

// Writes a document's pages to a PDF file through Qt's painter, with the title in the
// document's information. The file is replaced only when the whole document was written. The
// direct writer (PdfFileOutput) is the one reports use; this one stays for comparison.
class PainterPdfOutput : public ReportOutput
{
public:
    PainterPdfOutput(QString path, QString title);

    [[nodiscard]] bool start(QString*) override { return true; }
    [[nodiscard]] bool finish(const PageDocument& document, QString* error) override;

private:
    QString m_path;
    QString m_title;
};

} // namespace tabulor
