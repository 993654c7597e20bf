#include "production/pages/PageSetup.h"

#include <QLocale>
#include <QPageSize>

namespace tabulor {

QSizeF PageSetup::localePaper()
{
    const QPageSize::PageSizeId id = QLocale().measurementSystem() == QLocale::ImperialUSSystem
                                         ? QPageSize::Letter
                                         : QPageSize::A4;
    const QSizeF points = QPageSize(id).size(QPageSize::Point);
    return points * 20; // twips
}

} // namespace tabulor
