#include "tool_table.h"

#include <QRegularExpression>
#include <QStringList>

namespace tw {

namespace {
ToolDef menuItem(const char *id, const char *cap, const char *cat, const char *menu,
                 bool sep = false)
{
    return {id, cap, QString(), cat, QString(), 1, menu, sep, ToolKind::Button, QString()};
}
ToolDef bar(const char *id, const char *cap, const char *tip, int pos,
            ToolKind kind = ToolKind::Button, const char *group = "", bool sep = false)
{
    QString img = QString::fromLatin1(id).mid(3) + QStringLiteral(".bmp");
    return {id, cap, tip, QStringLiteral("General"), group, pos, QString(), sep, kind, img};
}
ToolDef opt(const char *id, const char *cap, const char *tip, const char *group,
            const char *parent)
{
    return {id, cap, tip, QStringLiteral("General"), group, 2, parent, false, ToolKind::Option,
            QString()};
}
}  // namespace

QString toolbarName(int position)
{
    static const char *names[] = {"", "MenuBar", "ToolOpen", "ToolPicture", "Player",
                                  "ToolText", "ToolInternet", "ToolInternetURL"};
    return position >= 1 && position <= 7 ? QString::fromLatin1(names[position]) : QString();
}

const std::vector<ToolDef> &toolTable()
{
    static const std::vector<ToolDef> t = [] {
        std::vector<ToolDef> v;
        auto menu = [&](const char *id, const char *cap, const char *cat) {
            v.push_back({id, cap, QString(), cat, QString(), 1, QString(), false, ToolKind::Menu,
                         QString()});
        };
        // File menu
        menu("ID_mnuFile", "&File", "FileMenu");
        const char *F = "ID_mnuFile";
        v.push_back(menuItem("ID_mnuOpenFile", "&Open File", "FileMenu", F));
        v.push_back(menuItem("ID_mnuOpenFilelnterent", "Open File located on the Internet", "FileMenu", F));
        v.push_back(menuItem("ID_mnuOpenOLE", "Open File with another Application", "FileMenu", F));
        v.push_back(menuItem("ID_mnuCloseFile", "Close File", "FileMenu", F));
        v.push_back(menuItem("ID_mnuSelectFiles", "Select Files", "FileMenu", F));
        v.push_back(menuItem("ID_mnuSelectFavoriteList", "Select Favorite List", "FileMenu", F));
        v.push_back(menuItem("ID_mnuCreateFavoriteList", "Create Favorite List", "FileMenu", F));
        v.push_back(menuItem("ID_mnuFileBackPrevious", "Go Back to Previous Tab", "FileMenu", F));
        v.push_back(menuItem("ID_mnuFindFiles", "Find Files", "FileMenu", F, true));
        v.push_back(menuItem("ID_mnuFindNextFolderwithFiles", "Find Next Folder with File Type", "FileMenu", F));
        v.push_back(menuItem("ID_mnuTwainAcquirePicture", "Twain Acquire Picture", "FileMenu", F, true));
        v.push_back(menuItem("ID_mnuTwainSelectSource", "Twain Select Source", "FileMenu", F));
        v.push_back(menuItem("ID_mnuFileCreateNewFolder", "Create New Folder", "FileMenu", F, true));
        v.push_back(menuItem("ID_mnuSaveFileAs", "Save File As", "FileMenu", F));
        v.push_back(menuItem("ID_mnuRenameFile", "Rename File", "FileMenu", F));
        v.push_back(menuItem("ID_mnuDeleteFile", "Delete File", "FileMenu", F));
        v.push_back(menuItem("ID_mnuConvertFiles", "Convert Files", "FileMenu", F));
        v.push_back(menuItem("ID_mnuProperties", "Properties", "FileMenu", F));
        v.push_back(menuItem("ID_mnuPrintFiles", "Print Files", "FileMenu", F, true));
        v.push_back(menuItem("ID_mnuSetUpPrinter", "Set Up Printer", "FileMenu", F));
        v.push_back(menuItem("ID_mnuExit", "Exit", "FileMenu", F, true));
        // Edit menu
        menu("ID_mnuEdit", "&Edit", "EditMenu");
        const char *E = "ID_mnuEdit";
        v.push_back(menuItem("ID_mnuCopy", "Copy", "EditMenu", E));
        v.push_back(menuItem("ID_mnuCut", "Cut", "EditMenu", E));
        v.push_back(menuItem("ID_mnuPaste", "Paste", "EditMenu", E));
        v.push_back(menuItem("ID_mnuImageReset", "Reset to Original", "EditMenu", E, true));
        v.push_back(menuItem("ID_mnuRemoveRed-Eye", "Remove Red-Eye", "EditMenu", E));
        v.push_back(menuItem("ID_mnuBrightness", "Picture Brightness", "EditMenu", E));
        v.push_back(menuItem("ID_mnuContrast", "Picture Contrast", "EditMenu", E));
        // View menu: the collapse command, then the running list of files seen.
        menu("ID_mnuView", "&View", "General");
        v.push_back(menuItem("ID_mnuCollapseExplorerTreeList", "Collapse ExplorerTree List", "General", "ID_mnuView"));
        // Utilities menu
        menu("ID_mnuUtilities", "&Utilities", "UtilitiesMenu");
        const char *U = "ID_mnuUtilities";
        v.push_back(menuItem("ID_mnuCreateandChangeFavoriteLists", "Create and Change Favorite Lists", "UtilitiesMenu", U));
        v.push_back(menuItem("ID_mnuSetColorsforTarnwick", "Set Colors for Tarnwick", "UtilitiesMenu", U));
        v.push_back(menuItem("ID_mnuSetTarnwickOptions", "Set Tarnwick Options", "UtilitiesMenu", U));
        v.push_back(menuItem("ID_mnuUtilitiesSetComputer", "Set Computer Name", "UtilitiesMenu", U));
        // Slide Show menu
        menu("ID_mnuSlideShow", "&Slide Show", "SlideShowMenu");
        const char *S = "ID_mnuSlideShow";
        v.push_back(menuItem("ID_mnuRunSlideShow", "Run Slide Show", "SlideShowMenu", S));
        v.push_back(menuItem("ID_mnuCreateSlideShow", "Create Slide Show", "SlideShowMenu", S));
        v.push_back(menuItem("ID_mnuRunSlideShowonCurrentFolder", "Run Slide Show on Current Folder", "SlideShowMenu", S));
        // Help menu
        menu("ID_mnuHelp", "&Help", "HelpMenu");
        const char *H = "ID_mnuHelp";
        v.push_back(menuItem("ID_mnuHelpTableofContents", "Help Table of Contents", "HelpMenu", H));
        v.push_back(menuItem("ID_mnuHelpSearch", "Search for Help Topics", "HelpMenu", H));
        v.push_back(menuItem("ID_mnuViewQuickTips", "View Quick Tips", "HelpMenu", H));
        v.push_back(menuItem("ID_mnuHelpAbout", "About the Tarnwick", "HelpMenu", H));

        // Toolbar 2: ToolOpen
        v.push_back(bar("ID_Find", "Find Files", "Find Pictures and Multimedia Files - F2", 2));
        v.push_back(bar("ID_FindNext", "Find Next", "Find Next File Location", 2));
        v.push_back(bar("ID_Select", "Select", "Select File to View or Play", 2));
        v.push_back(bar("ID_Print", "Print", "Print Highlighted File", 2));
        v.push_back(bar("ID_Collapse", "Collapse", "Collapse Device/Folder Tree View - Shift+Del", 2));
        v.push_back(bar("ID_UpFolder", "Up Folder", "Move up one Folder - Shift+Ins", 2));
        v.push_back(bar("ID_ThumbNails", "ThumbNails", "View Picture ThumbNails - Ctrl+Ins", 2));
        v.push_back(bar("ID_Stop", "ThumbNails", "Stop ThumbNail Loading - Shift+Ctrl+F1", 2));
        v.push_back(bar("ID_ViewBtn", "", "View Files using Large Icons, Small Icons, Icon Lists, or File Details", 2, ToolKind::DropDown));
        v.push_back(bar("ID_HelpOpen", "", "Help with Finding and Opening Files", 2));
        v.push_back(bar("ID_FilterBtn", "Filter", "Filter Files by File Types and Groups - Ctrl H", 2, ToolKind::DropDown));
        v.push_back({"ID_mnuViewDropDownMenu", "", "", "General", "", 2, "ID_ViewBtn", false, ToolKind::Menu, ""});
        v.push_back({"ID_mnuFileFilterDropDown", "", "", "General", "ToolOpenFilter", 2, "ID_FilterBtn", false, ToolKind::Menu, ""});
        v.push_back(opt("ID_LargeIcons", "Large Icons", "View Files using Large Icons", "ToolOpenView", "ID_mnuViewDropDownMenu"));
        v.push_back(opt("ID_SmallIcons", "Small Icons", "View Files using Small Icons", "ToolOpenView", "ID_mnuViewDropDownMenu"));
        v.push_back(opt("ID_ListIcons", "List Icons", "View Icons using List of Icons", "ToolOpenView", "ID_mnuViewDropDownMenu"));
        v.push_back(opt("ID_Details", "Details", "View File showing Details", "ToolOpenView", "ID_mnuViewDropDownMenu"));
        v.push_back({"ID_Separator", "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({"ID_FilterName", "", "Name of current Filter Used", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({"ID_Separator2", "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({"ID_Date", "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({"ID_Time", "", "", "General", "", 2, "", false, ToolKind::Label, ""});

        // Toolbar 3: ToolPicture
        v.push_back(bar("ID_Back", "", "Go Back to Previous Picture - Shift F7", 3));
        v.push_back(bar("ID_Forward", "Forward", "Go to next Picture - Shift F8", 3));
        v.push_back(bar("ID_ViewImage", "", "View Picture Options - Shift F9", 3, ToolKind::DropDown));
        v.push_back({"ID_mnuImageViewDropDown", "", "", "General", "ToolPictureView", 3, "ID_ViewImage", false, ToolKind::Menu, ""});
        auto pv = [&](const char *id, const char *cap, const char *tip, const char *group) {
            v.push_back({id, cap, tip, "General", group, 3, "ID_mnuImageViewDropDown", false,
                         ToolKind::Option, ""});
        };
        pv("ID_ViewNormal", "Normal", "View Picture as Normal Size", "ToolPictureView");
        pv("ID_ViewStretch", "Stretch Image to Window", "Stretch Picture into Window Frame", "ToolStretch");
        pv("ID_ViewSnap", "Snap Image to Window", "Snap Picture into Frame Size", "ToolStretch");
        pv("ID_ViewFitImage", "Fit Image to Window", "Fit Image to Window", "ToolStretch");
        pv("ID_ViewZoom", "", "Zoom in on Image", "ToolPictureView");
        pv("ID_ViewMagnify", "Magnify", "Magnify Areas of Picture", "ToolPictureView");
        pv("ID_ViewPan", "Pan Image", "Pan View of image", "ToolPictureView");
        v.push_back(bar("ID_EditImage", "Edit Image", "Edit Image - Ctrl K", 3));
        v.push_back(bar("ID_EditColors", "Edit Colors", "Edit Picture Colors - Ctrl M", 3));
        v.push_back(bar("ID_PrintImage", "Print Image", "Print Picture - Shift F10", 3));
        v.push_back(bar("ID_SaveImage", "Save Image", "Save Picture", 3));
        v.push_back(bar("ID_HelpImage", "", "Help with Picture Viewer and Editor", 3));
        v.push_back(bar("ID_Resize", "Resize", "Resize the Picture - Ctrl J", 3));
        v.push_back(bar("ID_PicFavorites", "Favorites", "Add Current Picture to Favorite List - Ctrl N", 3));

        // Toolbar 4: Player
        v.push_back(bar("ID_PlayBtn", "Play Video", "Play Video or Music - Ctrl Q", 4));
        v.push_back(bar("ID_Pause", "Pause", "Pause Video or Music from Playing - Ctrl U", 4));
        v.push_back(bar("ID_StopVideo", "Stop Video", "Stop Video or Music from Playing - Ctrl Z", 4));
        v.push_back(bar("ID_Sound", "Sound Control", "Control Sound Volume Display for Video or Music Player - Ctrl F10", 4, ToolKind::Check));
        v.push_back(bar("ID_Tracker", "Tracker Control", "Video or Music File Position Control - Ctrl F11", 4, ToolKind::Check));
        v.push_back(bar("ID_ListToggle", "Use File", "Toggle between Play List and Individual Files", 4, ToolKind::Check));
        v.push_back(bar("ID_PlayHelp", "", "Display Help with Video and Music Player", 4));
        v.push_back(bar("ID_Status", "Status", "Display Media Player Status - Ctrl F12", 4, ToolKind::Check));

        // Toolbar 5: ToolText
        v.push_back(bar("ID_TxtBack", "Backward", "Go Back one Page - Shift F1", 5));
        v.push_back(bar("ID_TxtForward", "Forward", "Move Forward one Page - Shift F2", 5));
        v.push_back(bar("ID_TxtPrint", "Print Page", "Print current Document or Text - Shift F3", 5));
        v.push_back(bar("ID_TxtSave", "", "Save Text Page - Shift F4", 5));
        v.push_back(bar("ID_TxtProperties", "Properties", "View Text or Document Properties - Shift F5", 5));
        v.push_back(bar("ID_TxtHelp", "", "Help with Text and Document Display", 5));

        // Toolbars 6 and 7: ToolInternet, ToolInternetURL
        v.push_back(bar("ID_IntBack", "", "Move Back to Previous Page - Ctrl F1", 6));
        v.push_back(bar("ID_IntForward", "Forward", "Move Forward one Page - Ctrl F2", 6));
        v.push_back(bar("ID_IntHome", "", "Display current Home Web Page - Ctrl F3", 6));
        v.push_back(bar("ID_IntStop", "", "Stop Loading Web Page - Ctrl F4", 6));
        v.push_back(bar("ID_IntRefresh", "Refresh", "Refresh Current Web Page - Ctrl F5", 6));
        v.push_back(bar("ID_IntPrint", "Print", "Print Web Page - Ctrl F6", 6));
        v.push_back(bar("ID_IntSave", "", "Save current Web Page - Ctrl F7", 6));
        v.push_back(bar("ID_IntProperties", "Properties", "Display Web page Properties - Ctrl F9", 6));
        v.push_back(bar("ID_IntFavorites", "Favorites", "Display Favorite Internet Web Pages - Shift+Ctrl+F9", 6));
        v.push_back(bar("ID_IntAddFavorite", "", "Add Current Web Page to Internet Favorites - Shift+Ctrl+F10", 6));
        v.push_back(bar("ID_IntVisited", "Visited", "Enter Web Site Page Address or Select from Visited Web Pages - Shift+Ctrl+F11", 6));
        v.push_back(bar("ID_IntHelp", "", "Display Help with Internet Tab", 6));
        v.push_back({"ID_IntURLEnter", "Enter Web Site Address or Select from Visited Sites", "", "General", "", 7, "", false, ToolKind::TextBox, ""});
        v.push_back(bar("ID_IntGo", "Go to Web Site", "Go to Web Site Page", 7));
        return v;
    }();
    return t;
}

QString shortcutFromTip(const QString &tip)
{
    const int dash = tip.lastIndexOf(QLatin1String(" - "));
    if (dash < 0) return QString();
    const QString tail = tip.mid(dash + 3).trimmed();
    static const QRegularExpression re(
        QStringLiteral("^((?:(?:Shift|Ctrl|Alt)[+ ])*)(F[0-9]{1,2}|Del|Ins|[A-Z])$"));
    const auto m = re.match(tail);
    if (!m.hasMatch()) return QString();
    QStringList parts;
    const QString mods = m.captured(1);
    if (mods.contains(QLatin1String("Shift"))) parts << QStringLiteral("Shift");
    if (mods.contains(QLatin1String("Ctrl"))) parts << QStringLiteral("Ctrl");
    if (mods.contains(QLatin1String("Alt"))) parts << QStringLiteral("Alt");
    QString key = m.captured(2);
    if (key == QLatin1String("Del")) key = QStringLiteral("Del");
    else if (key == QLatin1String("Ins")) key = QStringLiteral("Ins");
    parts << key;
    return parts.join(u'+');
}

}  // namespace tw
