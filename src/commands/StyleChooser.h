#pragma once

#include "definition/ReportStyle.h"

#include <QtGlobal>

#include <optional>

namespace tabulor {

// The font and colour choosers of the properties dialog: windows show the common dialogs,
// tests choose in advance. Each starts from the style's current value; nothing means the user
// cancelled.
class StyleChooser
{
public:
    virtual ~StyleChooser() = default;

    // A style whose font fields (name, size, bold, italic, strike-through, underline) and text
    // colour hold the chosen ones; its other fields are those of style.
    virtual std::optional<ReportStyle> chooseFont(const ReportStyle& style) = 0;
    // A colour as 0x00BBGGRR.
    virtual std::optional<qint32> chooseColour(qint32 colour) = 0;
};

} // namespace tabulor
