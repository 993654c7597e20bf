#include "production/pdf/PdfFileOutput.h"

#include "production/pages/PageDocument.h"

namespace tabulor {

PdfFileOutput::PdfFileOutput(QString path, QString title)
    : m_path(std::move(path)), m_title(std::move(title))
{
}

PdfFileOutput::~PdfFileOutput()
{
    discard();
}

bool PdfFileOutput::start(QString* error)
{
    m_writer = std::make_unique<PdfWriter>();
    QString reason;
    if (!m_writer->open(m_path, &reason)) {
        *error = cannotWrite(m_path, reason);
        m_writer.reset();
        return false;
    }
    m_writer->begin(m_title);
    m_sink = std::make_unique<PdfPageSink>(*m_writer);
    return true;
}

PageSink* PdfFileOutput::streamingSink()
{
    if (!m_sink)
        return nullptr;
    m_background.emplace(*m_sink);
    return &*m_background;
}

bool PdfFileOutput::finish(const PageDocument& document, QString* error)
{
    if (!m_writer) {
        *error = cannotWrite(m_path, QStringLiteral("the PDF was not started"));
        return false;
    }
    if (m_background) {
        m_background->finish();
    } else {
        for (const PageDisplayList& page : document.pages())
            m_sink->addPage(PageDisplayList(page));
    }
    bool written = false;
    QString reason = m_sink->error();
    if (reason.isEmpty())
        written = m_writer->finish(&reason);
    if (!written) {
        *error = cannotWrite(m_path, reason);
        discard();
    }
    return written;
}

void PdfFileOutput::discard()
{
    // The pages still on their way are written first: the sink's thread uses the writer.
    m_background.reset();
    m_sink.reset();
    m_writer.reset(); // a writer that did not finish removes what it began
}

} // namespace tabulor
