#pragma once

#include "production/base/Export.h"

#include <QSizeF>
#include <QtGlobal>

namespace tabulor {

// The page of a document, in twips.
struct TABULOR_EXPORT PageSetup
{
    QSizeF paper;           // portrait width and height
    qint16 orientation = 0; // 0 portrait, 1 landscape
    qint32 marginTop = 1440;
    qint32 marginBottom = 1440;
    qint32 marginLeft = 1440;
    qint32 marginRight = 720;
    int columns = 1;       // newspaper columns
    qint16 pageBorder = 0; // 0 none ... 7 all, as the General tab names them

    // The paper of the user's locale: Letter where it is the custom, A4 elsewhere.
    static QSizeF localePaper();

    QSizeF pageSize() const { return orientation == 1 ? paper.transposed() : paper; }
    double printableWidth() const { return pageSize().width() - marginLeft - marginRight; }
    double printableBottom() const { return pageSize().height() - marginBottom; }
};

} // namespace tabulor
