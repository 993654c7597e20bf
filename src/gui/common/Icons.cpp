#include "gui/common/Icons.h"

#include <QString>

namespace tabulor {

QIcon themedIcon(const char* name)
{
    const QString themeName = QString::fromLatin1(name);
    return QIcon::fromTheme(themeName,
                            QIcon(QStringLiteral(":/tabulor/icons/%1.svg").arg(themeName)));
}

} // namespace tabulor
