#include "production/pages/PreviewCapable.h"

namespace tabulor {

// Defined here, so that the library holds the one type information that tells a host's
// document apart (it is asked with dynamic_cast).
PreviewCapable::~PreviewCapable() = default;

} // namespace tabulor
