#pragma once

#include "production/base/Export.h"

#include <QtGlobal>

#include <optional>

namespace tabulor {

enum zrAccessModeSettings : qint32
{
    zrUse = 0,             // use reports only
    zrUseModify = 1,       // also open and save report files
    zrUseModifyCreate = 2, // also create reports and choose another database
};

// Which of the designer's commands an access mode offers.
struct AccessModeActions
{
    bool mNew = false;
    bool mOpen = false;
    bool mSave = false;
    bool mSaveAs = false;
    bool mSepSaveAs = false;
    bool mOpenDatabase = false;
    bool mSepDatabase = false;
    bool dataControlEnabled = false;
    bool toolbarNew = false;
    bool toolbarOpenSave = false; // buttons Open, Save and the separator behind them

    bool operator==(const AccessModeActions&) const = default;
};

// The commands of a mode; nothing for a value that is not a mode (it then changes nothing).
TABULOR_EXPORT std::optional<AccessModeActions> actionsForAccessMode(qint32 mode);

} // namespace tabulor
