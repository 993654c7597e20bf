#pragma once

#include "definition/ReportStyle.h"
#include "production/base/Export.h"
#include "production/pages/DisplayList.h"

#include <QColor>
#include <QFont>
#include <QHash>
#include <QMutex>
#include <QStringList>

namespace tabulor {

// Turns the fonts that styles name into fonts of this system, through the same matching that
// the PDF writer embeds fonts by, so that a layout is measured with the face that is drawn.
// The classic default face has a metric-compatible stand-in in the Windows-compatibility font
// package, outside the font search path: it is registered with Qt when it is first used, so
// that layouts keep their widths. A face that is not installed is replaced, and the
// replacement is remembered so that the user can be told. Safe to use from several threads.
class TABULOR_EXPORT FontCatalog
{
public:
    FontCatalog();

    QFont font(const FontSpec& fontSpec) const;
    QFont font(const ReportStyle& style) const { return font(fontSpec(style)); }
    static FontSpec fontSpec(const ReportStyle& style);
    // A style colour (0x00BBGGRR) as a colour to draw with.
    static QColor colour(qint32 bgr)
    {
        return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
    }
    // Whether bold text in the font is drawn with thickened glyphs, as the PDF writer draws
    // it: the face found for bold is regular, or bold in name only.
    bool thickened(const FontSpec& fontSpec) const;
    // "Name (replaced by Other)" for each face asked for that is not installed.
    QStringList substitutions() const;
    // The installed face that stands for the one requested: itself, or its replacement.
    QString family(const QString& requested) const;

private:
    // Pages are painted on the printing thread while the preview paints on its own.
    mutable QMutex m_mutex;
    mutable QHash<QString, QString> m_families; // requested face -> face used
    mutable QHash<QString, bool> m_thickened;   // family and slant of a bold font -> thickened
};

} // namespace tabulor
