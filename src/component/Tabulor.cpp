#include "component/Tabulor.h"

#include "component/Designer.h"
#include "component/RecentFiles.h"
#include "component/ReportSession.h"
#include "production/data/Recordset.h"
#include "production/pages/PreviewCapable.h"

#include <QDir>
#include <QFileInfo>

namespace tabulor {

Tabulor::Tabulor(Prompt* prompt) : m_session(std::make_unique<ReportSession>(prompt))
{
    m_session->ResetDefinition();
}

Tabulor::~Tabulor() = default;

qint32 Tabulor::AccessMode() const
{
    return m_session->accessMode();
}

void Tabulor::setAllowToolBar(bool allow)
{
    m_allowToolBar = allow;
    if (Designer* designer = Form())
        designer->setToolbarAllowed(allow);
}

void Tabulor::setAccessMode(qint32 pAccessMode)
{
    m_session->setAccessMode(pAccessMode);
    const auto actions = actionsForAccessMode(pAccessMode);
    if (actions && m_designer)
        m_designer->applyAccessMode(*actions);
}

Designer* Tabulor::Form()
{
    if (!m_designer) {
        if (DesignerProvider* provider = designerProvider()) {
            provider->ensureApplication();
            m_ownDesigner = provider->create(*this);
            setDesigner(m_ownDesigner.get());
            // The designer's load: the message texts, the built-in and the user's default
            // look, so that a report started in it has its styles.
            m_session->loadDesigner();
        }
    }
    return m_designer;
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

void Tabulor::addToRecentFiles(const QString& path)
{
    const QString settingsPath = m_session->settingsPath();
    QString error;
    ProfileFile settings = ProfileFile::read(settingsPath, &error).value_or(ProfileFile());
    RecentFiles files =
        RecentFiles::load(settings, [](const QString& file) { return QFileInfo(file).isFile(); });
    files.add(path);
    files.save(settings);
    // The list is a convenience: a settings file that cannot be written loses nothing else.
    if (QDir().mkpath(QFileInfo(settingsPath).absolutePath()))
        (void)settings.write(settingsPath, &error);
}

bool Tabulor::DoReport(const QString& vrdFilePath, PageDocument* zrPrinterOutput, Recordset* rsUser)
{
    ReportSession& session = *m_session;
    Designer* designer = m_showTabulor ? Form() : nullptr;
    session.ResetDefinition();
    m_outputDocument = designer ? &designer->document() : nullptr;
    m_previewDocument = nullptr;
    // Anything that cannot say how many fields it has is not taken for a recordset.
    if (rsUser && rsUser->fieldCount() >= 0)
        session.data().setHostRecordset(rsUser);

    if (designer)
        designer->show(m_showLayoutWindow);
    else
        m_outputDocument = zrPrinterOutput;
    // A host's document that offers a preview is the one the designer's preview settings go
    // to; any other leaves the preview to the designer's own.
    if (dynamic_cast<PreviewCapable*>(zrPrinterOutput))
        m_previewDocument = zrPrinterOutput;
    else if (designer)
        m_previewDocument = &designer->document();
    session.loadDesigner();

    bool loaded = true;
    if (!vrdFilePath.isEmpty()) {
        loaded = session.OpenReportFile(vrdFilePath);
        if (loaded) {
            session.definition().CurrentFileName = vrdFilePath;
            session.definition().Dirty = false;
            session.UpdateStatus(QString());
            if (designer)
                designer->reportLoaded();
            else
                addToRecentFiles(vrdFilePath);
            if (!designer && m_outputDocument)
                session.renderFullReport(*m_outputDocument);
        } else {
            session.tellUser(session.invalidFileMessage(vrdFilePath));
            session.data().setHostRecordset(nullptr);
        }
    } else if (designer) {
        designer->setCaption(ApplicationCaption);
    }

    if (designer) {
        designer->setHostDocument(zrPrinterOutput != &designer->document() ? zrPrinterOutput
                                                                           : nullptr);
        designer->waitUntilClosed();
    }
    return loaded;
}

} // namespace tabulor
