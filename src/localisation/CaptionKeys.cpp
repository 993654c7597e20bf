#include "localisation/CaptionKeys.h"

#include <QLatin1String>

#include <algorithm>
#include <array>

namespace tabulor {

namespace {

constexpr auto Main = CaptionWindow::Main;
constexpr auto Layout = CaptionWindow::Layout;
constexpr auto Settings = CaptionWindow::Settings;

constexpr CaptionKey text(CaptionWindow window, std::string_view name, std::string_view control,
                          std::string_view builtIn)
{
    return {name, window, CaptionTarget::Text, control, builtIn};
}

constexpr CaptionKey toolTip(std::string_view name, int button, std::string_view builtIn)
{
    return {name, Main, CaptionTarget::ToolTip, "Toolbar", builtIn, button};
}

constexpr CaptionKey tab(CaptionWindow window, std::string_view name, std::string_view tabStrip,
                         int tab, std::string_view builtIn)
{
    return {name, window, CaptionTarget::Tab, tabStrip, builtIn, tab};
}

constexpr CaptionKey list(std::string_view name, std::string_view control, int count,
                          std::string_view builtIn)
{
    return {name, Settings, CaptionTarget::List, control, builtIn, count};
}

constexpr auto kCaptionKeys = std::to_array<CaptionKey>({
    // Main window
    text(Main, "mCaption", "frmMain", "Tabulor"),
    text(Main, "mmFile", "mFile", "&File"),
    text(Main, "mmNew", "mNew", "&New"),
    text(Main, "mmOpen", "mOpen", "&Open..."),
    text(Main, "mmSave", "mSave", "&Save"),
    text(Main, "mmSaveAs", "mSaveAs", "Save &As..."),
    text(Main, "mmOpenDatabase", "mOpenDatabase", "Open Database..."),
    text(Main, "mmPrintSetup0", "mPrintSetup0", "P&rinter Setup..."),
    text(Main, "mmPrintSetup1", "mPrintSetup1", "Pa&ge Setup..."),
    text(Main, "mmPrint", "mPrint", "&Print"),
    text(Main, "mmExit", "mExit", "E&xit"),
    text(Main, "mmView", "mView", "&View"),
    text(Main, "mmDesigner", "mDesigner", "&Designer"),
    text(Main, "mmPreview", "mPreview", "Print Pre&view"),
    text(Main, "mmToolbar", "mToolbar", "&Toolbar"),
    text(Main, "mmOutline", "mOutline", "&Layout Window"),
    text(Main, "mmGlobal", "mGlobal", "&Global Settings"),
    text(Main, "mmOptions", "mOptions", "&Options"),
    text(Main, "mmRefresh", "mRefresh", "&Reload Database"),
    text(Main, "mmAutoFit", "mAutoFit", "&Fit Report to Page"),
    text(Main, "mmDefault", "mDefault", "Save Current Style As &Default"),
    text(Main, "mmHelp", "mHelp", "&Help"),
    text(Main, "mmTopics", "mTopics", "Help &Topics..."),
    text(Main, "mmAbout", "mAbout", "About Tabulor..."),
    toolTip("mttNew", 2, "New"),
    toolTip("mtOpen", 3, "Open"), // spelled with one "t" in every existing string file
    toolTip("mttSave", 4, "Save"),
    toolTip("mttPrint", 6, "Print"),
    toolTip("mttRefresh", 8, "Reload Database"),
    toolTip("mttDefault", 9, "Save Current Style As Default"),
    toolTip("mttFitToPage", 10, "Fit Report to Page"),
    toolTip("mttProperties", 12, "Global Settings"),
    toolTip("mttLayout", 13, "Layout Window"),
    tab(Main, "mtbDesign", "zrtab", 1, "Design"),
    tab(Main, "mtbPreview", "zrtab", 2, "Preview"),
    {"mpbPage", Main, CaptionTarget::Property, "pcb", "Page", 0, "PageCaption"},
    {"mpbZoom", Main, CaptionTarget::Property, "pcb", "Zoom", 0, "ZoomCaption"},

    // Layout window
    text(Layout, "lCaption", "frmStruct", "Layout Window"),
    text(Layout, "lFields", "lblFields", "Fields"),
    text(Layout, "lGroups", "lblHeadings", "Groups"),
    text(Layout, "lDetails", "lblDetails", "Details"),

    // Properties dialog: frame
    text(Settings, "sCaption", "frmSettings", "Settings"),
    tab(Settings, "stbText", "tb", 1, "Text"),
    tab(Settings, "stbFields", "tb", 2, "Fields"),
    tab(Settings, "stbStyles", "tb", 3, "Styles"),
    tab(Settings, "stbGeneral", "tb", 4, "General"),
    text(Settings, "sbtOK", "cmd0", "OK"),
    text(Settings, "sbtCancel", "cmd1", "Cancel"),
    text(Settings, "sbtApply", "cmd2", "Apply"),
    // the special-token menu; entries 3, 7 and 11 are separators
    text(Settings, "ssm0", "mSpecial0", "Page Number"),
    text(Settings, "ssm1", "mSpecial1", "Page Count"),
    text(Settings, "ssm2", "mSpecial2", "Line Break"),
    text(Settings, "ssm4", "mSpecial4", "Database Name"),
    text(Settings, "ssm5", "mSpecial5", "Record Source"),
    text(Settings, "ssm6", "mSpecial6", "Report File"),
    text(Settings, "ssm8", "mSpecial8", "Short Date"),
    text(Settings, "ssm9", "mSpecial9", "Medium Date"),
    text(Settings, "ssm10", "mSpecial10", "Long Date"),
    text(Settings, "ssm12", "mSpecial12", "Short Time"),
    text(Settings, "ssm13", "mSpecial13", "Medium Time"),
    text(Settings, "ssm14", "mSpecial14", "Long Time"),

    // Text tab
    list("sptList", "lstText", 3, "Report Title|headers|footers"),
    text(Settings, "sptTitle", "lblText", "&Report Title"),
    text(Settings, "sptLeft", "lblTxt0", "&Left"),
    text(Settings, "sptCenter", "lblTxt1", "&Center"),
    text(Settings, "sptRight", "lblTxt2", "&Right"),
    text(Settings, "sptAlignment", "lblAlign", "&Alignment"),
    list("sptAlignmentList", "cmbAlign", 3, "Left|Center|Right"),
    text(Settings, "sptSpecial", "cmdSpecial", "S&pecial..."),
    text(Settings, "sptStyle", "cmdTextStyle", "&St&yle >>"),

    // Fields tab
    text(Settings, "spfTitle", "lblFldTitle", "&Title"),
    text(Settings, "spfFormat", "lblFldFormat", "F&ormat"),
    text(Settings, "spfAlignment", "lblFldAlign", "&Alignment"),
    list("spfAlignmentList", "cmbFldAlign", 4, "(default)|Left|Center|Right"),
    text(Settings, "spfSorting", "lblFldSort", "&Sorting"),
    list("spfSortingList", "cmbFldSort", 3, "(none)|Ascending|Descending"),
    text(Settings, "spfTotal", "lblFldTotal", "Tota&l As"),
    list("spfTotalList", "cmbFldTotal", 8, "(none)|Sum|Percent|Count|Average|Max|Min|Std. Dev."),
    text(Settings, "spfStyle", "cmdFieldsStyle", "St&yle >>"),

    // Styles tab
    text(Settings, "spsPreview", "lblPreview", "Preview"),
    {"spsSampleEntry", Settings, CaptionTarget::SampleFormat, "fa", "This is a sample entry"},
    text(Settings, "spsFont", "cmdStyle0", "F&ont..."),
    text(Settings, "spsBackColor", "cmdStyle1", "B&ack Color..."),
    text(Settings, "spsBorderColor", "cmdStyle2", "Bo&rder Color..."),
    text(Settings, "spsSpacing", "fraSpacing", "S&pacing"),
    text(Settings, "spsBefore", "lblSpacing0", "Before"),
    text(Settings, "spsAfter", "lblSpacing1", "After"),
    text(Settings, "spsBorders", "fraBorders", "&Borders"),
    text(Settings, "spsTop", "lblBorder0", "Top"),
    text(Settings, "spsBottom", "lblBorder1", "Bottom"),
    list("spsList", "lstStyles", 11,
         "Report Title|Heading 1 Top| Heading 2 Top|  Heading 3 Top|   Detail Title|"
         "   Detail Body|  Heading 3 Bottom| Heading 2 Bottom|Heading 1 Bottom|headers|footers"),
    list("spsBorderList", "cmbBorder0", 4, "None|Thin|Medium|Thick"),
    list("spsBorderList", "cmbBorder1", 4, "None|Thin|Medium|Thick"),

    // General tab
    text(Settings, "spgSubtotalPosition", "fraPosition", "Subtotal &Position"),
    text(Settings, "spgAbove", "opPosition0", "Above"),
    text(Settings, "spgBelow", "opPosition1", "Below"),
    text(Settings, "spgBoth", "opPosition2", "Both"),
    text(Settings, "spgPagePrinter", "fraPagePrinter", "Page/Printer"),
    text(Settings, "spgBorders", "lblBorders", "&Borders"),
    list("spgBordersList", "cmbBorders", 8,
         "None|Bottom|Top|Top & Bot|Around|Columns|Columns, Top & Bot|All"),
    text(Settings, "spgColumns", "lblColumns", "&Columns"),
    text(Settings, "spgMargins", "cmdSetup0", "&Margins..."),
    text(Settings, "spgPrinter", "cmdSetup1", "&Printer..."),
    text(Settings, "spgLinePageBreaks", "fraBreaks", "Line Breaks/Page Breaks"),
    text(Settings, "spgOrphanWidow", "chkWidow", "&Orphan/Widow Control"),
    text(Settings, "spgWordWrap", "chkWordWrap", "Allow &Word Wrap"),
    text(Settings, "spgMaxHeight", "lblHeight", "Maximum Row &Height"),
});

} // namespace

std::span<const CaptionKey> captionKeys()
{
    return kCaptionKeys;
}

std::span<const CaptionKey> findCaptionKeys(QStringView name)
{
    const auto matches = [name](const CaptionKey& key) {
        return name == QLatin1String(key.name.data(), static_cast<qsizetype>(key.name.size()));
    };
    const auto first = std::find_if(kCaptionKeys.begin(), kCaptionKeys.end(), matches);
    const auto last = std::find_if_not(first, kCaptionKeys.end(), matches);
    return {first, last};
}

} // namespace tabulor
