#include "production/pdf/PdfFileOutput.h"

#include "production/pages/BackgroundPageSink.h"
#include "production/pages/PageDocument.h"
#include "production/pdf/PdfPageSink.h"
#include "production/pdf/PdfWriter.h"

#include <optional>

namespace tabulor {

struct PdfFileOutput::Writing
{
    PdfWriter writer;
    PdfPageSink sink{writer};
    // Declared last, so that it is gone, its pages written, before the sink and the writer.
    std::optional<BackgroundPageSink> background;
};

PdfFileOutput::PdfFileOutput(QString path, QString title)
    : m_path(std::move(path)), m_title(std::move(title))
{
}

PdfFileOutput::~PdfFileOutput() = default;

bool PdfFileOutput::start(QString* error)
{
    m_writing = std::make_unique<Writing>();
    QString reason;
    if (!m_writing->writer.open(m_path, &reason)) {
        *error = cannotWrite(m_path, reason);
        m_writing.reset();
        return false;
    }
    m_writing->writer.begin(m_title);
    return true;
}

PageSink* PdfFileOutput::streamingSink()
{
    if (!m_writing)
        return nullptr;
    m_writing->background.emplace(m_writing->sink);
    return &*m_writing->background;
}

bool PdfFileOutput::finish(const PageDocument& document, QString* error)
{
    if (!m_writing) {
        *error = cannotWrite(m_path, QStringLiteral("the PDF was not started"));
        return false;
    }
    if (m_writing->background) {
        m_writing->background->finish();
    } else {
        for (const PageDisplayList& page : document.pages())
            m_writing->sink.addPage(PageDisplayList(page));
    }
    bool written = false;
    QString reason = m_writing->sink.error();
    if (reason.isEmpty())
        written = m_writing->writer.finish(&reason);
    if (!written)
        *error = cannotWrite(m_path, reason);
    // A writer that did not finish removes what it began.
    m_writing.reset();
    return written;
}

void PdfFileOutput::discard()
{
    m_writing.reset();
}

} // namespace tabulor
