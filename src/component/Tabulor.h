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

    // The designer window, when the windows are available; the component does not own it.
    void setDesigner(Designer* designer);

    // Loads the definition at vrdFilePath (none when empty) with the host's recordset, if it
    // is one, in place of the database, and either lets the user work on it in the designer
    // or, with the designer hidden, renders the full report into the host's document. The
    // page header and footer are drawn there only when the document asks for them
    // (PageDocument::OverlayHeadersAndFooters). Returns false when the definition could not be
    // loaded; the user has then been told why.
    bool DoReport(const QString& vrdFilePath, PageDocument* zrPrinterOutput = nullptr,
                  Recordset* rsUser = nullptr);

private:
    std::unique_ptr<ReportSession> m_session;
    Designer* m_designer = nullptr;
    bool m_showTabulor = true;
    bool m_showLayoutWindow = false;
    bool m_allowToolBar = true;
};

} // namespace tabulor
