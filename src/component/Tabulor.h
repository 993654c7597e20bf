#pragma once

#include "component/AccessMode.h"
#include "component/Prompt.h"
#include "production/base/Export.h"

#include <QString>

#include <memory>

namespace tabulor {

class Designer;
class PageDocument;
class Recordset;
class ReportSession;

// The component a host creates: four settings and DoReport.
class TABULOR_EXPORT Tabulor
{
public:
    static inline const QString ApplicationCaption = QStringLiteral("Brintel Tabulor");

    // Messages go to prompt (stderr when none is given).
    explicit Tabulor(Prompt* prompt = nullptr);
    ~Tabulor();

    ReportSession& session() { return *m_session; }

    bool ShowTabulor() const { return m_showTabulor; }
    void setShowTabulor(bool show) { m_showTabulor = show; }
    bool ShowLayoutWindow() const { return m_showLayoutWindow; }
    void setShowLayoutWindow(bool show) { m_showLayoutWindow = show; }
    bool AllowToolBar() const { return m_allowToolBar; }
    void setAllowToolBar(bool allow);
    qint32 AccessMode() const;
    void setAccessMode(qint32 pAccessMode);

    // The designer window (the classic Form): made, hidden, by the windows' library on first
    // use when one is loaded; null without windows.
    Designer* Form();
    // Another designer window to use, which the component does not own (for a host that
    // brings its own, and for tests).
    void setDesigner(Designer* designer);

    // The document that rendering draws into, and the one whose preview the designer drives:
    // the designer's own, or a host's that offers a preview (PreviewCapable). Null when there
    // is none.
    PageDocument* OutputDocument() const { return m_outputDocument; }
    PageDocument* PreviewDocument() const { return m_previewDocument; }

    // Loads the definition at vrdFilePath (none when empty) with the host's recordset, if it
    // is one, in place of the database, and either lets the user work on it in the designer,
    // returning when the user closes it (the host's document then receives the report as last
    // designed), or, with the designer hidden, renders the full report into the host's
    // document. The page header and footer are drawn there only when the document asks for
    // them (PageDocument::OverlayHeadersAndFooters). Returns false when the definition could
    // not be loaded; the user has then been told why.
    bool DoReport(const QString& vrdFilePath, PageDocument* zrPrinterOutput = nullptr,
                  Recordset* rsUser = nullptr);

private:
    // The recent files, as the designer keeps them, when a report is loaded without it.
    void addToRecentFiles(const QString& path);

    std::unique_ptr<ReportSession> m_session;
    std::unique_ptr<Designer> m_ownDesigner;
    Designer* m_designer = nullptr;
    PageDocument* m_outputDocument = nullptr;
    PageDocument* m_previewDocument = nullptr;
    bool m_showTabulor = true;
    bool m_showLayoutWindow = false;
    bool m_allowToolBar = true;
};

} // namespace tabulor
