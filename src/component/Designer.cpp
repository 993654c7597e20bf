#include "component/Designer.h"

namespace tabulor {

namespace {

// Set once, as the windows' library is loaded, before any component asks for it.
DesignerProvider* g_provider =
    nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

DesignerProvider* designerProvider()
{
    return g_provider;
}

void setDesignerProvider(DesignerProvider* provider)
{
    g_provider = provider;
}

} // namespace tabulor
