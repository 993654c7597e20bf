#pragma once

#include "component/AccessMode.h"
#include "production/base/Export.h"

#include <QString>

#include <memory>

namespace tabulor {

class PageDocument;
class Tabulor;

// What the component asks of the designer window. The windows' library provides it; without
// one the component works headless.
class TABULOR_EXPORT Designer
{
public:
    virtual ~Designer() = default;

    virtual void applyAccessMode(const AccessModeActions& actions) = 0;
    virtual void setToolbarAllowed(bool allowed) = 0;
    virtual void setCaption(const QString& caption) = 0;
    // The designer's own page document, where its preview shows the report.
    virtual PageDocument& document() = 0;
    // Shows the window, and the layout window with it when asked; returns at once.
    virtual void show(bool showLayoutWindow) = 0;
    // The report file that DoReport loaded is the one the window works on now.
    virtual void reportLoaded() = 0;
    // The document that receives the report as last designed when the window closes; null for
    // none.
    virtual void setHostDocument(PageDocument* document) = 0;
    // Returns when the user has closed the window; events go on being handled meanwhile.
    virtual void waitUntilClosed() = 0;
};

// Makes designer windows. The windows' library registers one as it is loaded; a component then
// opens its designer through it.
class TABULOR_EXPORT DesignerProvider
{
public:
    virtual ~DesignerProvider() = default;
    // Creates the application object that windows need, when the process has none yet.
    virtual void ensureApplication() = 0;
    // A new, hidden designer window for the component.
    virtual std::unique_ptr<Designer> create(Tabulor& component) = 0;
};

// The provider registered, or null when no windows' library is loaded.
TABULOR_EXPORT DesignerProvider* designerProvider();
TABULOR_EXPORT void setDesignerProvider(DesignerProvider* provider);

} // namespace tabulor
