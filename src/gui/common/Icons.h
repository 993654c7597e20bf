#pragma once

#include <QIcon>

namespace tabulor {

// The icon of the desktop's theme called name (a freedesktop icon name such as
// "document-open"), or, where the theme has none, the one built into the program.
QIcon themedIcon(const char* name);

} // namespace tabulor
