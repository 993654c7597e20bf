#include "component/AccessMode.h"

namespace tabulor {

std::optional<AccessModeActions> actionsForAccessMode(qint32 mode)
{
    if (mode != zrUse && mode != zrUseModify && mode != zrUseModifyCreate)
        return std::nullopt;
    const bool modify = mode != zrUse;
    const bool create = mode == zrUseModifyCreate;
    AccessModeActions a;
    a.mNew = create;
    a.mOpen = a.mSave = a.mSaveAs = a.mSepSaveAs = modify;
    a.mOpenDatabase = a.mSepDatabase = create;
    a.dataControlEnabled = create;
    a.toolbarNew = create;
    a.toolbarOpenSave = modify;
    return a;
}

} // namespace tabulor
