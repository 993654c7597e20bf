#pragma once

#include "component/Prompt.h"

#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>

class QThread;

namespace tabulor {

class PageDocument;
class ReportSession;

// Lays out the full report of a session on a thread of its own, so that the window that asked
// for it keeps repainting and can cancel it. The thread works on copies: the definition and
// the texts as they were when it started, and a connection of its own to the database (a
// host's recordset is read there, the working view having loaded what it shows already).
// Progress comes back as signals, on the thread that started the report.
class BackgroundReport : public QObject
{
    Q_OBJECT

public:
    // Starts at once; the document is filled on the other thread until finished() is emitted.
    BackgroundReport(const ReportSession& session, QObject* parent = nullptr);
    ~BackgroundReport() override; // cancels and waits

    // Stops the report at the next page; finished() follows with complete false.
    void cancel();
    bool running() const;

    // The document once finished() has been emitted.
    PageDocument& document() { return *m_document; }
    // What the report would have told the user (a record source that cannot be read, a page
    // that could not be made), once finished() has been emitted.
    const QStringList& messages() const { return m_messages; }

Q_SIGNALS:
    void pageStarted(int page);
    void finished(bool complete);

private:
    class Collector : public Prompt
    {
    public:
        PromptAnswer ask(const PromptRequest& request) override;
        QStringList messages;
    };

    std::unique_ptr<PageDocument> m_document;
    std::atomic<bool> m_cancelled{false};
    Collector m_collector;
    QStringList m_messages;
    QThread* m_thread = nullptr;
};

} // namespace tabulor
