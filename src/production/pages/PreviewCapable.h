#pragma once

#include "production/base/Export.h"

namespace tabulor {

class PreviewNavigation;

// A page document that a preview can be driven through: a host whose document also offers
// this lets the designer's print and preview settings go to it; any other document only
// receives the report.
class TABULOR_EXPORT PreviewCapable
{
public:
    virtual ~PreviewCapable();
    virtual PreviewNavigation& preview() = 0;
};

} // namespace tabulor
