#pragma once

#include "component/AccessMode.h"

#include <QHash>
#include <QString>

namespace tabulor {

// The two views of the designer: the report grid, or its pages.
enum class DesignerView
{
    Design,
    Preview,
};

// What the menus and the toolbar show of the designer's state.
struct DesignerFacts
{
    // The commands of the last access mode the window took (a value that is no mode changes
    // nothing, so the window keeps the ones before).
    AccessModeActions access = *actionsForAccessMode(zrUse);
    DesignerView view = DesignerView::Design;
    bool toolbarAllowed = true; // the host's AllowToolBar
    bool toolbarShown = true;   // the user's choice in the View menu
    bool recordSourceOpen = false;
    bool busy = false; // a full report is being produced for the printer
    bool canUndo = false;
    bool canRedo = false;
};

struct ActionFlags
{
    bool visible = true;
    bool enabled = true;
    bool checked = false;

    bool operator==(const ActionFlags&) const = default;
};

// The visible, enabled and checked state of every menu entry and toolbar button, by the
// object name of its action (the toolbar's buttons by "tb" and their command's name), from
// the facts alone: the one place where these states are decided.
QHash<QString, ActionFlags> actionStateFor(const DesignerFacts& facts);

} // namespace tabulor
