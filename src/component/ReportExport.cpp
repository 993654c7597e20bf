#include "component/ReportExport.h"

#include "component/ReportSession.h"
#include "production/pages/PageDocument.h"
#include "production/pages/ReportOutput.h"

namespace tabulor {

namespace {

void discardAll(std::span<ReportOutput* const> outputs)
{
    for (ReportOutput* output : outputs)
        output->discard();
}

} // namespace

bool exportReport(ReportSession& session, PageDocument& document,
                  std::span<ReportOutput* const> outputs, QString* error)
{
    for (ReportOutput* output : outputs) {
        if (!output->start(error)) {
            discardAll(outputs);
            return false;
        }
    }
    if (outputs.size() == 1)
        document.setSink(outputs.front()->streamingSink());
    session.renderFullReport(document);
    document.setSink(nullptr);
    if (document.stopped()) {
        *error = QStringLiteral("the report stopped before it was complete");
        discardAll(outputs);
        return false;
    }
    for (size_t i = 0; i < outputs.size(); ++i) {
        if (!outputs[i]->finish(document, error)) {
            discardAll(outputs.subspan(i));
            return false;
        }
    }
    return true;
}

} // namespace tabulor
