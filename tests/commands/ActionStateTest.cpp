#include "commands/ActionState.h"

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

QHash<QString, ActionFlags> stateIn(qint32 mode)
{
    DesignerFacts facts;
    facts.access = *actionsForAccessMode(mode);
    facts.recordSourceOpen = true;
    return actionStateFor(facts);
}

QStringList visibleOf(const QHash<QString, ActionFlags>& state, const QStringList& names)
{
    QStringList visible;
    for (const QString& name : names) {
        if (state.value(name).visible)
            visible.append(name);
    }
    return visible;
}

} // namespace

TEST(ActionState, EachAccessModeShowsItsCommands)
{
    const QStringList governed = {"mNew",       "mOpen",         "mSave",        "mSaveAs",
                                  "mSepSaveAs", "mOpenDatabase", "mSepDatabase", "tbNew",
                                  "tbOpen",     "tbSave",        "tbSeparator5"};
    EXPECT_TRUE(visibleOf(stateIn(zrUse), governed).isEmpty());
    EXPECT_EQ(visibleOf(stateIn(zrUseModify), governed),
              (QStringList{"mOpen", "mSave", "mSaveAs", "mSepSaveAs", "tbOpen", "tbSave",
                           "tbSeparator5"}));
    EXPECT_EQ(visibleOf(stateIn(zrUseModifyCreate), governed), governed);

    EXPECT_FALSE(stateIn(zrUseModify).value("DataControl").enabled);
    EXPECT_TRUE(stateIn(zrUseModifyCreate).value("DataControl").enabled);
    // What every mode offers.
    for (qint32 mode : {zrUse, zrUseModify, zrUseModifyCreate}) {
        const auto state = stateIn(mode);
        for (const char* name : {"mPrint", "mPreview", "mRefresh", "mAutoFit", "tbPrint"})
            EXPECT_TRUE(state.value(name).visible && state.value(name).enabled) << name << mode;
    }
}

TEST(ActionState, ViewToolbarDataAndPrintingDecideTheRest)
{
    DesignerFacts facts;
    facts.access = *actionsForAccessMode(zrUseModifyCreate);
    facts.recordSourceOpen = true;

    auto state = actionStateFor(facts);
    EXPECT_TRUE(state.value("mDesigner").checked);
    EXPECT_FALSE(state.value("mPreview").checked);
    EXPECT_TRUE(state.value("mToolbar").checked);

    facts.view = DesignerView::Preview;
    facts.toolbarShown = false;
    state = actionStateFor(facts);
    EXPECT_FALSE(state.value("mDesigner").checked);
    EXPECT_TRUE(state.value("mPreview").checked);
    EXPECT_FALSE(state.value("mToolbar").checked);
    EXPECT_TRUE(state.value("mToolbar").visible);

    // A host that allows no toolbar hides its menu entry too, unchecked.
    facts.toolbarAllowed = false;
    facts.toolbarShown = true;
    EXPECT_EQ(actionStateFor(facts).value("mToolbar"), (ActionFlags{false, true, false}));

    // Without data there is nothing to print, reload or fit.
    facts.recordSourceOpen = false;
    state = actionStateFor(facts);
    for (const char* name : {"mPrint", "mRefresh", "mAutoFit", "tbPrint", "tbFitToPage"})
        EXPECT_FALSE(state.value(name).enabled) << name;
    EXPECT_TRUE(state.value("mNew").enabled);

    // While a report is produced for the printer, nothing replaces or changes it.
    facts.recordSourceOpen = true;
    facts.busy = true;
    state = actionStateFor(facts);
    for (const char* name : {"mNew", "mOpen", "mSave", "mPrint", "mPreview", "mGlobal"})
        EXPECT_FALSE(state.value(name).enabled) << name;
    EXPECT_TRUE(state.value("mExit").enabled);
}
