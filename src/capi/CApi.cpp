#include <tabulor/tabulor.h>

#include "capi/RecordingPrompt.h"
#include "component/Designer.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "production/data/host/CallbackRecordset.h"
#include "production/pages/PngOutput.h"
#include "production/pdf/PdfFileOutput.h"

#include <QGuiApplication>

#include <cstddef>
#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>

struct tabulor_component
{
    tabulor::RecordingPrompt prompt; // before the component, which keeps a pointer to it
    tabulor::Tabulor component{&prompt};
    mutable std::string lastError;
};

struct tabulor_document
{
    tabulor::PageDocument document;
    mutable std::string lastError;
};

namespace tabulor {
namespace {

// Why the last call on this thread failed when it had no handle to keep the reason: a creation,
// or a call given NULL for its handle.
thread_local std::string t_unattachedError;

// What one call comes to: a status, and why when it failed.
struct Outcome
{
    int status = TABULOR_OK;
    QString message;
};

Outcome failure(int status, const QString& message)
{
    return {status, message};
}

Outcome missing(const char* what)
{
    return failure(TABULOR_ERROR_ARGUMENT,
                   QStringLiteral("no %1 was given (NULL)").arg(QLatin1String(what)));
}

// Runs the body of an entry point: its outcome becomes the last error, and nothing it throws
// gets past.
template <typename Body> int run(std::string& lastError, Body&& body) noexcept
{
    Outcome outcome;
    try {
        outcome = body();
    } catch (const std::bad_alloc&) {
        outcome = failure(TABULOR_ERROR_INTERNAL, QStringLiteral("out of memory"));
    } catch (const std::exception& e) {
        outcome = failure(TABULOR_ERROR_INTERNAL, QString::fromUtf8(e.what()));
    } catch (...) {
        outcome = failure(TABULOR_ERROR_INTERNAL, QStringLiteral("an unexpected failure"));
    }
    try {
        lastError = outcome.message.toStdString();
    } catch (...) {
        lastError.clear();
    }
    return outcome.status;
}

template <typename Handle, typename Body>
int onHandle(Handle* handle, const char* what, Body&& body) noexcept
{
    if (!handle)
        return run(t_unattachedError, [what] { return missing(what); });
    return run(handle->lastError, [&] { return body(*handle); });
}

// Reads a property into *out.
template <typename Handle, typename Value, typename Getter>
int read(Handle* handle, const char* what, Value* out, Getter&& getter) noexcept
{
    return onHandle(handle, what, [&](Handle& h) {
        if (!out)
            return missing("place for the value");
        *out = getter(h);
        return Outcome{};
    });
}

// Reports are laid out with the system's fonts, which takes a GUI application. A host without
// a Qt application gets one without windows, made once and kept until the process ends.
Outcome ensureApplication()
{
    // With the designer's windows in the library, the application is one that can show them.
    if (DesignerProvider* windows = designerProvider(); windows && !QCoreApplication::instance())
        windows->ensureApplication();
    if (QCoreApplication* application = QCoreApplication::instance()) {
        if (qobject_cast<QGuiApplication*>(application))
            return {};
        return failure(TABULOR_ERROR_INTERNAL,
                       QStringLiteral("the host's Qt application is no QGuiApplication, which "
                                      "laying out reports needs"));
    }
    // Qt's notes (a missing runtime folder and the like) are no business of a host that never
    // asked for Qt; failures reach it through the interface. TABULOR_DEBUG shows them.
    static const QtMessageHandler qtHandler = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext& context, const QString& message) {
            if (type == QtCriticalMsg || type == QtFatalMsg ||
                qEnvironmentVariableIsSet("TABULOR_DEBUG")) {
                if (qtHandler)
                    qtHandler(type, context, message);
                else
                    std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
            }
        });
    static char name[] = "tabulor";
    static char platformOption[] = "-platform";
    static char platform[] = "offscreen";
    static char* arguments[] = {name, platformOption, platform, nullptr};
    static int count = 3;
    // Nobody owns it: it lasts as long as the process.
    new QGuiApplication(count, arguments);
    return {};
}

template <typename Handle> int create(Handle** out, const char* what) noexcept
{
    return run(t_unattachedError, [&] {
        if (!out)
            return missing(what);
        *out = nullptr;
        Outcome outcome = ensureApplication();
        if (outcome.status == TABULOR_OK)
            *out = new Handle;
        return outcome;
    });
}

const char* lastErrorOf(const std::string* handleError) noexcept
{
    return handleError ? handleError->c_str() : t_unattachedError.c_str();
}

// Checks pages first to *last of a document (*last 0: to its last page).
Outcome checkPageRange(int pageCount, int first, int* last)
{
    if (pageCount == 0)
        return failure(TABULOR_ERROR_OUTPUT,
                       QStringLiteral("the document has no pages; render a report into it first"));
    if (*last == 0)
        *last = pageCount;
    if (first < 1 || *last < first || *last > pageCount)
        return failure(TABULOR_ERROR_ARGUMENT,
                       QStringLiteral("pages %1 to %2 are not in the document, which has %3")
                           .arg(first)
                           .arg(*last)
                           .arg(pageCount));
    return {};
}

// Hands a document's pages to an output, as the end of a report does.
Outcome write(ReportOutput& output, const PageDocument& document)
{
    QString error;
    if (!output.start(&error) || !output.finish(document, &error))
        return failure(TABULOR_ERROR_OUTPUT, error);
    return {};
}

} // namespace
} // namespace tabulor

using namespace tabulor;

extern "C" {

const char* tabulor_version(void)
{
    return TABULOR_VERSION_TEXT;
}

int tabulor_component_create(tabulor_component** component)
{
    return create(component, "place for the component");
}

void tabulor_component_destroy(tabulor_component* component)
{
    delete component;
}

int tabulor_set_show_tabulor(tabulor_component* component, int show)
{
    return onHandle(component, "component", [show](tabulor_component& c) {
        c.component.setShowTabulor(show != 0);
        return Outcome{};
    });
}

int tabulor_get_show_tabulor(const tabulor_component* component, int* show)
{
    return read(component, "component", show,
                [](const tabulor_component& c) { return c.component.ShowTabulor() ? 1 : 0; });
}

int tabulor_set_allow_toolbar(tabulor_component* component, int allow)
{
    return onHandle(component, "component", [allow](tabulor_component& c) {
        c.component.setAllowToolBar(allow != 0);
        return Outcome{};
    });
}

int tabulor_get_allow_toolbar(const tabulor_component* component, int* allow)
{
    return read(component, "component", allow,
                [](const tabulor_component& c) { return c.component.AllowToolBar() ? 1 : 0; });
}

int tabulor_set_show_layout_window(tabulor_component* component, int show)
{
    return onHandle(component, "component", [show](tabulor_component& c) {
        c.component.setShowLayoutWindow(show != 0);
        return Outcome{};
    });
}

int tabulor_get_show_layout_window(const tabulor_component* component, int* show)
{
    return read(component, "component", show,
                [](const tabulor_component& c) { return c.component.ShowLayoutWindow() ? 1 : 0; });
}

int tabulor_set_access_mode(tabulor_component* component, int32_t mode)
{
    return onHandle(component, "component", [mode](tabulor_component& c) {
        c.component.setAccessMode(mode);
        return Outcome{};
    });
}

int tabulor_get_access_mode(const tabulor_component* component, int32_t* mode)
{
    return read(component, "component", mode,
                [](const tabulor_component& c) { return c.component.AccessMode(); });
}

int tabulor_set_echo_messages(tabulor_component* component, int echo)
{
    return onHandle(component, "component", [echo](tabulor_component& c) {
        c.prompt.setEcho(echo != 0);
        return Outcome{};
    });
}

const char* tabulor_last_error(const tabulor_component* component)
{
    return lastErrorOf(component ? &component->lastError : nullptr);
}

int tabulor_document_create(tabulor_document** document)
{
    return create(document, "place for the document");
}

void tabulor_document_destroy(tabulor_document* document)
{
    delete document;
}

int tabulor_document_set_overlay_headers(tabulor_document* document, int overlay)
{
    return onHandle(document, "document", [overlay](tabulor_document& d) {
        d.document.OverlayHeadersAndFooters = overlay != 0;
        return Outcome{};
    });
}

int tabulor_document_get_overlay_headers(const tabulor_document* document, int* overlay)
{
    return read(document, "document", overlay, [](const tabulor_document& d) {
        return d.document.OverlayHeadersAndFooters ? 1 : 0;
    });
}

int tabulor_document_page_count(const tabulor_document* document, int32_t* pages)
{
    return read(document, "document", pages,
                [](const tabulor_document& d) { return int32_t(d.document.pages().size()); });
}

int tabulor_document_save_pdf(tabulor_document* document, const char* path)
{
    return onHandle(document, "document", [path](tabulor_document& d) {
        if (!path || !*path)
            return missing("file name");
        const auto& pages = d.document.pages();
        int last = 0;
        if (Outcome range = checkPageRange(int(pages.size()), 1, &last); range.status)
            return range;
        PdfFileOutput pdf(QString::fromUtf8(path), d.document.FileName);
        return write(pdf, d.document);
    });
}

int tabulor_document_save_png(tabulor_document* document, const char* pattern, int32_t dpi,
                              int32_t first_page, int32_t last_page)
{
    return onHandle(document, "document", [&](tabulor_document& d) {
        if (!pattern || !*pattern)
            return missing("file name");
        if (dpi < 10 || dpi > 1200)
            return failure(TABULOR_ERROR_ARGUMENT,
                           QStringLiteral("a resolution of %1 dots per inch is not between 10 "
                                          "and 1200")
                               .arg(dpi));
        const auto& pages = d.document.pages();
        int last = last_page;
        if (Outcome range = checkPageRange(int(pages.size()), first_page, &last); range.status)
            return range;
        PngOutput png(QString::fromUtf8(pattern), dpi, first_page, last);
        return write(png, d.document);
    });
}

const char* tabulor_document_last_error(const tabulor_document* document)
{
    return lastErrorOf(document ? &document->lastError : nullptr);
}

int tabulor_do_report(tabulor_component* component, const char* path, tabulor_document* output,
                      const tabulor_recordset_callbacks* records)
{
    return onHandle(component, "component", [&](tabulor_component& c) {
        // A table must at least reach the function that reads values.
        constexpr size_t kShortest = offsetof(tabulor_recordset_callbacks, record_count);
        if (records && records->struct_size < kShortest)
            return failure(TABULOR_ERROR_ARGUMENT,
                           QStringLiteral("the recordset table is %1 bytes long; its functions "
                                          "up to value take %2")
                               .arg(records->struct_size)
                               .arg(kShortest));
        std::optional<CallbackRecordset> host;
        if (records)
            host.emplace(*records);

        c.prompt.clear();
        Tabulor& tabulor = c.component;
        const bool loaded =
            tabulor.DoReport(path ? QString::fromUtf8(path) : QString(),
                             output ? &output->document : nullptr, host ? &*host : nullptr);
        // The host's table is released as this call ends; the session must not keep it.
        tabulor.session().data().setHostRecordset(nullptr);

        QStringList messages = c.prompt.messages();
        if (!loaded) {
            if (const auto& fault = tabulor.session().lastReadError())
                messages.append(tabulor.session().strings().readErrorMessage(*fault));
            return failure(TABULOR_ERROR_DEFINITION, messages.join(u'\n'));
        }
        if (output && output->document.stopped())
            return failure(TABULOR_ERROR_REPORT, messages.isEmpty()
                                                     ? QStringLiteral("the report stopped")
                                                     : messages.join(u'\n'));
        return Outcome{};
    });
}

} // extern "C"
