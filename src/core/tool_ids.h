// The identifier of every fixed tool of the tool manager, declared once here and used
// by the tool table and by every command that names a tool. A tool's constant is its
// identifier without the ID_ prefix, with a hyphen written as an underscore.
#pragma once

#include <QLatin1String>

namespace tw::tool {

inline constexpr QLatin1String Back{"ID_Back"};
inline constexpr QLatin1String Collapse{"ID_Collapse"};
inline constexpr QLatin1String Date{"ID_Date"};
inline constexpr QLatin1String Details{"ID_Details"};
inline constexpr QLatin1String EditColors{"ID_EditColors"};
inline constexpr QLatin1String EditImage{"ID_EditImage"};
inline constexpr QLatin1String FilterBtn{"ID_FilterBtn"};
inline constexpr QLatin1String FilterName{"ID_FilterName"};
inline constexpr QLatin1String Find{"ID_Find"};
inline constexpr QLatin1String FindNext{"ID_FindNext"};
inline constexpr QLatin1String Forward{"ID_Forward"};
inline constexpr QLatin1String HelpImage{"ID_HelpImage"};
inline constexpr QLatin1String HelpOpen{"ID_HelpOpen"};
inline constexpr QLatin1String IntAddFavorite{"ID_IntAddFavorite"};
inline constexpr QLatin1String IntBack{"ID_IntBack"};
inline constexpr QLatin1String IntFavorites{"ID_IntFavorites"};
inline constexpr QLatin1String IntForward{"ID_IntForward"};
inline constexpr QLatin1String IntGo{"ID_IntGo"};
inline constexpr QLatin1String IntHelp{"ID_IntHelp"};
inline constexpr QLatin1String IntHome{"ID_IntHome"};
inline constexpr QLatin1String IntPrint{"ID_IntPrint"};
inline constexpr QLatin1String IntProperties{"ID_IntProperties"};
inline constexpr QLatin1String IntRefresh{"ID_IntRefresh"};
inline constexpr QLatin1String IntSave{"ID_IntSave"};
inline constexpr QLatin1String IntStop{"ID_IntStop"};
inline constexpr QLatin1String IntURLEnter{"ID_IntURLEnter"};
inline constexpr QLatin1String IntVisited{"ID_IntVisited"};
inline constexpr QLatin1String LargeIcons{"ID_LargeIcons"};
inline constexpr QLatin1String ListIcons{"ID_ListIcons"};
inline constexpr QLatin1String ListToggle{"ID_ListToggle"};
inline constexpr QLatin1String mnuBrightness{"ID_mnuBrightness"};
inline constexpr QLatin1String mnuCloseFile{"ID_mnuCloseFile"};
inline constexpr QLatin1String mnuCollapseExplorerTreeList{"ID_mnuCollapseExplorerTreeList"};
inline constexpr QLatin1String mnuContrast{"ID_mnuContrast"};
inline constexpr QLatin1String mnuConvertFiles{"ID_mnuConvertFiles"};
inline constexpr QLatin1String mnuCopy{"ID_mnuCopy"};
inline constexpr QLatin1String mnuCreateandChangeFavoriteLists{"ID_mnuCreateandChangeFavoriteLists"};
inline constexpr QLatin1String mnuCreateFavoriteList{"ID_mnuCreateFavoriteList"};
inline constexpr QLatin1String mnuCreateSlideShow{"ID_mnuCreateSlideShow"};
inline constexpr QLatin1String mnuCut{"ID_mnuCut"};
inline constexpr QLatin1String mnuDeleteFile{"ID_mnuDeleteFile"};
inline constexpr QLatin1String mnuEdit{"ID_mnuEdit"};
inline constexpr QLatin1String mnuExit{"ID_mnuExit"};
inline constexpr QLatin1String mnuFile{"ID_mnuFile"};
inline constexpr QLatin1String mnuFileBackPrevious{"ID_mnuFileBackPrevious"};
inline constexpr QLatin1String mnuFileCreateNewFolder{"ID_mnuFileCreateNewFolder"};
inline constexpr QLatin1String mnuFileFilterDropDown{"ID_mnuFileFilterDropDown"};
inline constexpr QLatin1String mnuFindFiles{"ID_mnuFindFiles"};
inline constexpr QLatin1String mnuFindNextFolderwithFiles{"ID_mnuFindNextFolderwithFiles"};
inline constexpr QLatin1String mnuHelp{"ID_mnuHelp"};
inline constexpr QLatin1String mnuHelpAbout{"ID_mnuHelpAbout"};
inline constexpr QLatin1String mnuHelpSearch{"ID_mnuHelpSearch"};
inline constexpr QLatin1String mnuHelpTableofContents{"ID_mnuHelpTableofContents"};
inline constexpr QLatin1String mnuImageReset{"ID_mnuImageReset"};
inline constexpr QLatin1String mnuImageViewDropDown{"ID_mnuImageViewDropDown"};
inline constexpr QLatin1String mnuOpenFile{"ID_mnuOpenFile"};
inline constexpr QLatin1String mnuOpenFilelnterent{"ID_mnuOpenFilelnterent"};
inline constexpr QLatin1String mnuOpenOLE{"ID_mnuOpenOLE"};
inline constexpr QLatin1String mnuPaste{"ID_mnuPaste"};
inline constexpr QLatin1String mnuPrintFiles{"ID_mnuPrintFiles"};
inline constexpr QLatin1String mnuProperties{"ID_mnuProperties"};
inline constexpr QLatin1String mnuRemoveRed_Eye{"ID_mnuRemoveRed-Eye"};
inline constexpr QLatin1String mnuRenameFile{"ID_mnuRenameFile"};
inline constexpr QLatin1String mnuRunSlideShow{"ID_mnuRunSlideShow"};
inline constexpr QLatin1String mnuRunSlideShowonCurrentFolder{"ID_mnuRunSlideShowonCurrentFolder"};
inline constexpr QLatin1String mnuSaveFileAs{"ID_mnuSaveFileAs"};
inline constexpr QLatin1String mnuSelectFavoriteList{"ID_mnuSelectFavoriteList"};
inline constexpr QLatin1String mnuSelectFiles{"ID_mnuSelectFiles"};
inline constexpr QLatin1String mnuSetColorsforTarnwick{"ID_mnuSetColorsforTarnwick"};
inline constexpr QLatin1String mnuSetTarnwickOptions{"ID_mnuSetTarnwickOptions"};
inline constexpr QLatin1String mnuSetUpPrinter{"ID_mnuSetUpPrinter"};
inline constexpr QLatin1String mnuSlideShow{"ID_mnuSlideShow"};
inline constexpr QLatin1String mnuTwainAcquirePicture{"ID_mnuTwainAcquirePicture"};
inline constexpr QLatin1String mnuTwainSelectSource{"ID_mnuTwainSelectSource"};
inline constexpr QLatin1String mnuUtilities{"ID_mnuUtilities"};
inline constexpr QLatin1String mnuUtilitiesSetComputer{"ID_mnuUtilitiesSetComputer"};
inline constexpr QLatin1String mnuView{"ID_mnuView"};
inline constexpr QLatin1String mnuViewDropDownMenu{"ID_mnuViewDropDownMenu"};
inline constexpr QLatin1String mnuViewQuickTips{"ID_mnuViewQuickTips"};
inline constexpr QLatin1String Pause{"ID_Pause"};
inline constexpr QLatin1String PicFavorites{"ID_PicFavorites"};
inline constexpr QLatin1String PlayBtn{"ID_PlayBtn"};
inline constexpr QLatin1String PlayHelp{"ID_PlayHelp"};
inline constexpr QLatin1String Print{"ID_Print"};
inline constexpr QLatin1String PrintImage{"ID_PrintImage"};
inline constexpr QLatin1String Resize{"ID_Resize"};
inline constexpr QLatin1String SaveImage{"ID_SaveImage"};
inline constexpr QLatin1String Select{"ID_Select"};
inline constexpr QLatin1String Separator{"ID_Separator"};
inline constexpr QLatin1String Separator2{"ID_Separator2"};
inline constexpr QLatin1String SmallIcons{"ID_SmallIcons"};
inline constexpr QLatin1String Sound{"ID_Sound"};
inline constexpr QLatin1String Status{"ID_Status"};
inline constexpr QLatin1String Stop{"ID_Stop"};
inline constexpr QLatin1String StopVideo{"ID_StopVideo"};
inline constexpr QLatin1String ThumbNails{"ID_ThumbNails"};
inline constexpr QLatin1String Time{"ID_Time"};
inline constexpr QLatin1String Tracker{"ID_Tracker"};
inline constexpr QLatin1String TxtBack{"ID_TxtBack"};
inline constexpr QLatin1String TxtForward{"ID_TxtForward"};
inline constexpr QLatin1String TxtHelp{"ID_TxtHelp"};
inline constexpr QLatin1String TxtPrint{"ID_TxtPrint"};
inline constexpr QLatin1String TxtProperties{"ID_TxtProperties"};
inline constexpr QLatin1String TxtSave{"ID_TxtSave"};
inline constexpr QLatin1String UpFolder{"ID_UpFolder"};
inline constexpr QLatin1String ViewBtn{"ID_ViewBtn"};
inline constexpr QLatin1String ViewFitImage{"ID_ViewFitImage"};
inline constexpr QLatin1String ViewImage{"ID_ViewImage"};
inline constexpr QLatin1String ViewMagnify{"ID_ViewMagnify"};
inline constexpr QLatin1String ViewNormal{"ID_ViewNormal"};
inline constexpr QLatin1String ViewPan{"ID_ViewPan"};
inline constexpr QLatin1String ViewSnap{"ID_ViewSnap"};
inline constexpr QLatin1String ViewStretch{"ID_ViewStretch"};
inline constexpr QLatin1String ViewZoom{"ID_ViewZoom"};

// Every identifier above, in one list (the start-up check of handled tools reads it).
inline constexpr QLatin1String All[] = {
    Back,
    Collapse,
    Date,
    Details,
    EditColors,
    EditImage,
    FilterBtn,
    FilterName,
    Find,
    FindNext,
    Forward,
    HelpImage,
    HelpOpen,
    IntAddFavorite,
    IntBack,
    IntFavorites,
    IntForward,
    IntGo,
    IntHelp,
    IntHome,
    IntPrint,
    IntProperties,
    IntRefresh,
    IntSave,
    IntStop,
    IntURLEnter,
    IntVisited,
    LargeIcons,
    ListIcons,
    ListToggle,
    mnuBrightness,
    mnuCloseFile,
    mnuCollapseExplorerTreeList,
    mnuContrast,
    mnuConvertFiles,
    mnuCopy,
    mnuCreateandChangeFavoriteLists,
    mnuCreateFavoriteList,
    mnuCreateSlideShow,
    mnuCut,
    mnuDeleteFile,
    mnuEdit,
    mnuExit,
    mnuFile,
    mnuFileBackPrevious,
    mnuFileCreateNewFolder,
    mnuFileFilterDropDown,
    mnuFindFiles,
    mnuFindNextFolderwithFiles,
    mnuHelp,
    mnuHelpAbout,
    mnuHelpSearch,
    mnuHelpTableofContents,
    mnuImageReset,
    mnuImageViewDropDown,
    mnuOpenFile,
    mnuOpenFilelnterent,
    mnuOpenOLE,
    mnuPaste,
    mnuPrintFiles,
    mnuProperties,
    mnuRemoveRed_Eye,
    mnuRenameFile,
    mnuRunSlideShow,
    mnuRunSlideShowonCurrentFolder,
    mnuSaveFileAs,
    mnuSelectFavoriteList,
    mnuSelectFiles,
    mnuSetColorsforTarnwick,
    mnuSetTarnwickOptions,
    mnuSetUpPrinter,
    mnuSlideShow,
    mnuTwainAcquirePicture,
    mnuTwainSelectSource,
    mnuUtilities,
    mnuUtilitiesSetComputer,
    mnuView,
    mnuViewDropDownMenu,
    mnuViewQuickTips,
    Pause,
    PicFavorites,
    PlayBtn,
    PlayHelp,
    Print,
    PrintImage,
    Resize,
    SaveImage,
    Select,
    Separator,
    Separator2,
    SmallIcons,
    Sound,
    Status,
    Stop,
    StopVideo,
    ThumbNails,
    Time,
    Tracker,
    TxtBack,
    TxtForward,
    TxtHelp,
    TxtPrint,
    TxtProperties,
    TxtSave,
    UpFolder,
    ViewBtn,
    ViewFitImage,
    ViewImage,
    ViewMagnify,
    ViewNormal,
    ViewPan,
    ViewSnap,
    ViewStretch,
    ViewZoom,
};

}  // namespace tw::tool
