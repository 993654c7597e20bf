#include "commands/BackgroundReport.h"

#include "component/ReportSession.h"
#include "production/pages/PageDocument.h"

#include <QThread>

namespace tabulor {

PromptAnswer BackgroundReport::Collector::ask(const PromptRequest& request)
{
    messages.append(request.text);
    return request.defaultAnswer;
}

BackgroundReport::BackgroundReport(const ReportSession& session, QObject* parent)
    : QObject(parent), m_document(std::make_unique<PageDocument>())
{
    m_document->OverlayHeadersAndFooters = true;
    // What the other thread works on, taken here, while the session is not changing.
    ReportDefinition definition = session.definition();
    StringTable strings = session.strings();
    const ReportData& data = session.data();
    const QString databasePath = data.DatabasePath();
    const QString recordSource = data.RecordSourceName();
    const QString definitionPath = data.definitionPath();
    Recordset* host = data.hostRecordset();
    std::function<QDateTime()> clock = session.clock();

    m_thread = QThread::create([=, this]() mutable {
        ReportSession copy(&m_collector);
        copy.setEventPump([] {});
        copy.setClock(clock);
        copy.strings() = strings;
        copy.definition() = definition;
        copy.data().setHostRecordset(host);
        copy.OpenDataSource(databasePath, recordSource, definitionPath);
        QObject::connect(&copy, &ReportSession::pageStarted, this, &BackgroundReport::pageStarted,
                         Qt::QueuedConnection);
        const PageHook stop = m_document->addNewPageHook([this](PageDocument& d) {
            if (m_cancelled.load())
                d.stop();
        });
        copy.renderFullReport(*m_document);
    });
    connect(m_thread, &QThread::finished, this, [this] {
        m_messages = m_collector.messages;
        Q_EMIT finished(!m_cancelled.load() && !m_document->stopped());
    });
    m_thread->start();
}

BackgroundReport::~BackgroundReport()
{
    cancel();
    m_thread->wait();
    delete m_thread;
}

void BackgroundReport::cancel()
{
    m_cancelled = true;
}

bool BackgroundReport::running() const
{
    return m_thread->isRunning();
}

} // namespace tabulor
