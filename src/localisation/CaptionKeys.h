#pragma once

#include <QStringView>

#include <span>
#include <string_view>

namespace tabulor {

// The windows whose controls a string file may relabel.
enum class CaptionWindow
{
    Main,
    Layout,
    Settings
};

inline constexpr int kCaptionWindowCount = 3;

// What a caption key changes in its window.
enum class CaptionTarget
{
    Text,         // the visible text of the control; for the window itself its title
    ToolTip,      // the tool tip of toolbar button `number`, counted from 1 with separators
    Tab,          // the caption of tab `number` of a tab strip, counted from 1
    Property,     // the text property `property` of the control
    List,         // the entries of a list or combo box, exactly `number` of them
    SampleFormat, // the format string of a sample grid: ";|" followed by the value
};

// One target of a caption key. Controls are named by their object names in the window; the
// members of a control array carry their index at the end of the name ("cmdStyle0",
// "mSpecial12"), and a window names itself by its own name ("frmMain").
struct CaptionKey
{
    std::string_view name; // the key as a string file writes it, after the "*"
    CaptionWindow window;
    CaptionTarget target;
    std::string_view control;
    std::string_view builtIn; // the text before any string file; for a list its entries
                              // joined by "|", for a sample grid without the ";|"
    int number = 0;
    std::string_view property = {};
};

// Every caption key in the order in which a key read from the file is tested against them:
// the main window's, the layout window's, then the properties dialog's. A key with more than
// one target has one entry per target, next to each other.
std::span<const CaptionKey> captionKeys();

// The targets of the caption key called name, compared exactly; empty for no caption key.
std::span<const CaptionKey> findCaptionKeys(QStringView name);

} // namespace tabulor
