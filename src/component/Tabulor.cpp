#include "component/Tabulor.h"

#include "component/Designer.h"
#include "component/ReportSession.h"
#include "production/data/Recordset.h"

namespace tabulor {

Tabulor::Tabulor(Prompt* prompt) : m_session(std::make_unique<ReportSession>(prompt))
{
    m_session->ResetDefinition();
}

Tabulor::~Tabulor() = default;

void Tabulor::setAllowToolBar(bool allow)
{
    m_allowToolBar = allow;
    if (m_designer)
        m_designer->setToolbarAllowed(allow);
}

qint32 Tabulor::AccessMode() const
{
    return m_session->accessMode();
}

void Tabulor::setAccessMode(qint32 pAccessMode)
{
    m_session->setAccessMode(pAccessMode);
    const auto actions = actionsForAccessMode(pAccessMode);
    if (actions && m_designer)
        m_designer->applyAccessMode(*actions);
}

void Tabulor::setDesigner(Designer* designer)
{
    m_designer = designer;
    if (!m_designer)
        return;
    m_designer->setToolbarAllowed(m_allowToolBar);
    if (const auto actions = actionsForAccessMode(AccessMode()))
        m_designer->applyAccessMode(*actions);
}

bool Tabulor::DoReport(const QString& vrdFilePath, PageDocument* zrPrinterOutput, Recordset* rsUser)
{
    ReportSession& session = *m_session;
    session.ResetDefinition();
    // Anything that cannot say how many fields it has is not taken for a recordset.
    if (rsUser && rsUser->fieldCount() >= 0)
        session.data().setHostRecordset(rsUser);

    const bool designerShown = m_showTabulor && m_designer;
    session.loadDesigner();

    bool loaded = true;
    if (!vrdFilePath.isEmpty()) {
        loaded = session.OpenReportFile(vrdFilePath);
        if (loaded) {
            session.definition().CurrentFileName = vrdFilePath;
            session.definition().Dirty = false;
            session.UpdateStatus(QString());
            if (!designerShown && zrPrinterOutput)
                session.renderFullReport(*zrPrinterOutput);
        } else {
            session.tellUser(session.invalidFileMessage(vrdFilePath));
            session.data().setHostRecordset(nullptr);
        }
    } else if (m_designer) {
        m_designer->setCaption(ApplicationCaption);
    }

    if (designerShown)
        m_designer->runModal(m_showLayoutWindow);
    return loaded;
}

} // namespace tabulor
