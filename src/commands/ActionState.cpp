#include "commands/ActionState.h"

namespace tabulor {

QHash<QString, ActionFlags> actionStateFor(const DesignerFacts& facts)
{
    const AccessModeActions& a = facts.access;
    const bool idle = !facts.busy;
    const bool data = facts.recordSourceOpen && idle;
    const bool preview = facts.view == DesignerView::Preview;
    const auto shown = [](bool visible, bool enabled = true) {
        return ActionFlags{visible, enabled, false};
    };
    const auto ticked = [](bool checked, bool enabled = true) {
        return ActionFlags{true, enabled, checked};
    };

    QHash<QString, ActionFlags> s;
    s.insert(QStringLiteral("mNew"), shown(a.mNew, idle));
    s.insert(QStringLiteral("mOpen"), shown(a.mOpen, idle));
    s.insert(QStringLiteral("mSave"), shown(a.mSave, idle));
    s.insert(QStringLiteral("mSaveAs"), shown(a.mSaveAs, idle));
    s.insert(QStringLiteral("mSepSaveAs"), shown(a.mSepSaveAs));
    s.insert(QStringLiteral("mOpenDatabase"), shown(a.mOpenDatabase, idle));
    s.insert(QStringLiteral("mSepDatabase"), shown(a.mSepDatabase));
    s.insert(QStringLiteral("mPrintSetup0"), shown(true, idle));
    s.insert(QStringLiteral("mPrintSetup1"), shown(true, idle));
    s.insert(QStringLiteral("mPrint"), shown(true, data));
    s.insert(QStringLiteral("mExit"), shown(true));
    s.insert(QStringLiteral("mUndo"), shown(true, facts.canUndo && idle));
    s.insert(QStringLiteral("mRedo"), shown(true, facts.canRedo && idle));
    s.insert(QStringLiteral("mDesigner"), ticked(!preview, idle));
    s.insert(QStringLiteral("mPreview"), ticked(preview, idle));
    s.insert(QStringLiteral("mToolbar"),
             ActionFlags{facts.toolbarAllowed, true, facts.toolbarAllowed && facts.toolbarShown});
    s.insert(QStringLiteral("mOutline"), shown(true));
    s.insert(QStringLiteral("mGlobal"), shown(true, idle));
    s.insert(QStringLiteral("mRefresh"), shown(true, data));
    s.insert(QStringLiteral("mAutoFit"), shown(true, data));
    s.insert(QStringLiteral("mDefault"), shown(true, idle));
    s.insert(QStringLiteral("mTopics"), shown(true, false)); // there is no help file
    s.insert(QStringLiteral("mAbout"), shown(true));
    s.insert(QStringLiteral("DataControl"), shown(true, a.dataControlEnabled && idle));

    s.insert(QStringLiteral("tbNew"), shown(a.toolbarNew, idle));
    s.insert(QStringLiteral("tbOpen"), shown(a.toolbarOpenSave, idle));
    s.insert(QStringLiteral("tbSave"), shown(a.toolbarOpenSave, idle));
    s.insert(QStringLiteral("tbSeparator5"), shown(a.toolbarOpenSave));
    s.insert(QStringLiteral("tbPrint"), shown(true, data));
    s.insert(QStringLiteral("tbRefresh"), shown(true, data));
    s.insert(QStringLiteral("tbDefault"), shown(true, idle));
    s.insert(QStringLiteral("tbFitToPage"), shown(true, data));
    s.insert(QStringLiteral("tbProperties"), shown(true, idle));
    s.insert(QStringLiteral("tbLayout"), shown(true));
    return s;
}

} // namespace tabulor
