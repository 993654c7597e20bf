#pragma once

#include "component/AccessMode.h"

#include <QString>

namespace tabulor {

// What the component asks of the designer window. The window library provides it; without
// one the component works headless.
class Designer
{
public:
    virtual ~Designer() = default;

    virtual void applyAccessMode(const AccessModeActions& actions) = 0;
    virtual void setToolbarAllowed(bool allowed) = 0;
    // Shows the window (and the layout window) and returns when the user has closed it.
    virtual void runModal(bool showLayoutWindow) = 0;
    virtual void setCaption(const QString& caption) = 0;
};

} // namespace tabulor
