#include "tool_table.h"

#include <QRegularExpression>
#include <QStringList>

#include "tool_ids.h"

namespace tw {

namespace {
ToolDef menuItem(QLatin1String id, const char *cap, const char *cat, QLatin1String menu, bool sep = false)
{
    return {id, cap, QString(), cat, QString(), 1, menu, sep, ToolKind::Button, QString()};
}
ToolDef bar(QLatin1String id, const char *cap, const char *tip, int pos, ToolKind kind = ToolKind::Button,
            const char *group = "", bool sep = false)
{
    QString img = QString(id).mid(3) + QStringLiteral(".bmp");
    return {id, cap, tip, QStringLiteral("General"), group, pos, QString(), sep, kind, img};
}
ToolDef opt(QLatin1String id, const char *cap, const char *tip, const char *group, QLatin1String parent)
{
    return {id, cap, tip, QStringLiteral("General"), group, 2, parent, false, ToolKind::Option, QString()};
}
}  // namespace

QString toolbarName(int position)
{
    static const char *names[] = {"",       "MenuBar",  "ToolOpen",     "ToolPicture",
                                  "Player", "ToolText", "ToolInternet", "ToolInternetURL"};
    return position >= 1 && position <= 7 ? QString::fromLatin1(names[position]) : QString();
}

const std::vector<ToolDef> &toolTable()
{
    static const std::vector<ToolDef> t = [] {
        std::vector<ToolDef> v;
        auto menu = [&](QLatin1String id, const char *cap, const char *cat) {
            v.push_back({id, cap, QString(), cat, QString(), 1, QString(), false, ToolKind::Menu, QString()});
        };
        // File menu
        menu(tool::mnuFile, "&File", "FileMenu");
        const QLatin1String F = tool::mnuFile;
        v.push_back(menuItem(tool::mnuOpenFile, "&Open File", "FileMenu", F));
        v.push_back(menuItem(tool::mnuOpenFilelnterent, "Open File located on the Internet", "FileMenu", F));
        v.push_back(menuItem(tool::mnuOpenOLE, "Open File with another Application", "FileMenu", F));
        v.push_back(menuItem(tool::mnuCloseFile, "Close File", "FileMenu", F));
        v.push_back(menuItem(tool::mnuSelectFiles, "Select Files", "FileMenu", F));
        v.push_back(menuItem(tool::mnuSelectFavoriteList, "Select Favorite List", "FileMenu", F));
        v.push_back(menuItem(tool::mnuCreateFavoriteList, "Create Favorite List", "FileMenu", F));
        v.push_back(menuItem(tool::mnuFileBackPrevious, "Go Back to Previous Tab", "FileMenu", F));
        v.push_back(menuItem(tool::mnuFindFiles, "Find Files", "FileMenu", F, true));
        v.push_back(
            menuItem(tool::mnuFindNextFolderwithFiles, "Find Next Folder with File Type", "FileMenu", F));
        v.push_back(menuItem(tool::mnuTwainAcquirePicture, "Twain Acquire Picture", "FileMenu", F, true));
        v.push_back(menuItem(tool::mnuTwainSelectSource, "Twain Select Source", "FileMenu", F));
        v.push_back(menuItem(tool::mnuFileCreateNewFolder, "Create New Folder", "FileMenu", F, true));
        v.push_back(menuItem(tool::mnuSaveFileAs, "Save File As", "FileMenu", F));
        v.push_back(menuItem(tool::mnuRenameFile, "Rename File", "FileMenu", F));
        v.push_back(menuItem(tool::mnuDeleteFile, "Delete File", "FileMenu", F));
        v.push_back(menuItem(tool::mnuConvertFiles, "Convert Files", "FileMenu", F));
        v.push_back(menuItem(tool::mnuProperties, "Properties", "FileMenu", F));
        v.push_back(menuItem(tool::mnuPrintFiles, "Print Files", "FileMenu", F, true));
        v.push_back(menuItem(tool::mnuSetUpPrinter, "Set Up Printer", "FileMenu", F));
        v.push_back(menuItem(tool::mnuExit, "Exit", "FileMenu", F, true));
        // Edit menu
        menu(tool::mnuEdit, "&Edit", "EditMenu");
        const QLatin1String E = tool::mnuEdit;
        v.push_back(menuItem(tool::mnuCopy, "Copy", "EditMenu", E));
        v.push_back(menuItem(tool::mnuCut, "Cut", "EditMenu", E));
        v.push_back(menuItem(tool::mnuPaste, "Paste", "EditMenu", E));
        v.push_back(menuItem(tool::mnuImageReset, "Reset to Original", "EditMenu", E, true));
        v.push_back(menuItem(tool::mnuRemoveRed_Eye, "Remove Red-Eye", "EditMenu", E));
        v.push_back(menuItem(tool::mnuBrightness, "Picture Brightness", "EditMenu", E));
        v.push_back(menuItem(tool::mnuContrast, "Picture Contrast", "EditMenu", E));
        // View menu: the collapse command, then the running list of files seen.
        menu(tool::mnuView, "&View", "General");
        v.push_back(menuItem(tool::mnuCollapseExplorerTreeList, "Collapse ExplorerTree List", "General",
                             tool::mnuView));
        // Utilities menu
        menu(tool::mnuUtilities, "&Utilities", "UtilitiesMenu");
        const QLatin1String U = tool::mnuUtilities;
        v.push_back(menuItem(tool::mnuCreateandChangeFavoriteLists, "Create and Change Favorite Lists",
                             "UtilitiesMenu", U));
        v.push_back(menuItem(tool::mnuSetColorsforTarnwick, "Set Colors for Tarnwick", "UtilitiesMenu", U));
        v.push_back(menuItem(tool::mnuSetTarnwickOptions, "Set Tarnwick Options", "UtilitiesMenu", U));
        v.push_back(menuItem(tool::mnuUtilitiesSetComputer, "Set Computer Name", "UtilitiesMenu", U));
        // Slide Show menu
        menu(tool::mnuSlideShow, "&Slide Show", "SlideShowMenu");
        const QLatin1String S = tool::mnuSlideShow;
        v.push_back(menuItem(tool::mnuRunSlideShow, "Run Slide Show", "SlideShowMenu", S));
        v.push_back(menuItem(tool::mnuCreateSlideShow, "Create Slide Show", "SlideShowMenu", S));
        v.push_back(menuItem(tool::mnuRunSlideShowonCurrentFolder, "Run Slide Show on Current Folder",
                             "SlideShowMenu", S));
        // Help menu
        menu(tool::mnuHelp, "&Help", "HelpMenu");
        const QLatin1String H = tool::mnuHelp;
        v.push_back(menuItem(tool::mnuHelpTableofContents, "Help Table of Contents", "HelpMenu", H));
        v.push_back(menuItem(tool::mnuHelpSearch, "Search for Help Topics", "HelpMenu", H));
        v.push_back(menuItem(tool::mnuViewQuickTips, "View Quick Tips", "HelpMenu", H));
        v.push_back(menuItem(tool::mnuHelpAbout, "About the Tarnwick", "HelpMenu", H));

        // Toolbar 2: ToolOpen
        v.push_back(bar(tool::Find, "Find Files", "Find Pictures and Multimedia Files - F2", 2));
        v.push_back(bar(tool::FindNext, "Find Next", "Find Next File Location", 2));
        v.push_back(bar(tool::Select, "Select", "Select File to View or Play", 2));
        v.push_back(bar(tool::Print, "Print", "Print Highlighted File", 2));
        v.push_back(bar(tool::Collapse, "Collapse", "Collapse Device/Folder Tree View - Shift+Del", 2));
        v.push_back(bar(tool::UpFolder, "Up Folder", "Move up one Folder - Shift+Ins", 2));
        v.push_back(bar(tool::ThumbNails, "ThumbNails", "View Picture ThumbNails - Ctrl+Ins", 2));
        v.push_back(bar(tool::Stop, "ThumbNails", "Stop ThumbNail Loading - Shift+Ctrl+F1", 2));
        v.push_back(bar(tool::ViewBtn, "",
                        "View Files using Large Icons, Small Icons, Icon Lists, or File Details", 2,
                        ToolKind::DropDown));
        v.push_back(bar(tool::HelpOpen, "", "Help with Finding and Opening Files", 2));
        v.push_back(bar(tool::FilterBtn, "Filter", "Filter Files by File Types and Groups - Ctrl H", 2,
                        ToolKind::DropDown));
        v.push_back(
            {tool::mnuViewDropDownMenu, "", "", "General", "", 2, tool::ViewBtn, false, ToolKind::Menu, ""});
        v.push_back({tool::mnuFileFilterDropDown, "", "", "General", "ToolOpenFilter", 2, tool::FilterBtn,
                     false, ToolKind::Menu, ""});
        v.push_back(opt(tool::LargeIcons, "Large Icons", "View Files using Large Icons", "ToolOpenView",
                        tool::mnuViewDropDownMenu));
        v.push_back(opt(tool::SmallIcons, "Small Icons", "View Files using Small Icons", "ToolOpenView",
                        tool::mnuViewDropDownMenu));
        v.push_back(opt(tool::ListIcons, "List Icons", "View Icons using List of Icons", "ToolOpenView",
                        tool::mnuViewDropDownMenu));
        v.push_back(opt(tool::Details, "Details", "View File showing Details", "ToolOpenView",
                        tool::mnuViewDropDownMenu));
        v.push_back({tool::Separator, "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({tool::FilterName, "", "Name of current Filter Used", "General", "", 2, "", false,
                     ToolKind::Label, ""});
        v.push_back({tool::Separator2, "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({tool::Date, "", "", "General", "", 2, "", false, ToolKind::Label, ""});
        v.push_back({tool::Time, "", "", "General", "", 2, "", false, ToolKind::Label, ""});

        // Toolbar 3: ToolPicture
        v.push_back(bar(tool::Back, "", "Go Back to Previous Picture - Shift F7", 3));
        v.push_back(bar(tool::Forward, "Forward", "Go to next Picture - Shift F8", 3));
        v.push_back(bar(tool::ViewImage, "", "View Picture Options - Shift F9", 3, ToolKind::DropDown));
        v.push_back({tool::mnuImageViewDropDown, "", "", "General", "ToolPictureView", 3, tool::ViewImage,
                     false, ToolKind::Menu, ""});
        auto pv = [&](QLatin1String id, const char *cap, const char *tip, const char *group) {
            v.push_back(
                {id, cap, tip, "General", group, 3, tool::mnuImageViewDropDown, false, ToolKind::Option, ""});
        };
        pv(tool::ViewNormal, "Normal", "View Picture as Normal Size", "ToolPictureView");
        pv(tool::ViewStretch, "Stretch Image to Window", "Stretch Picture into Window Frame", "ToolStretch");
        pv(tool::ViewSnap, "Snap Image to Window", "Snap Picture into Frame Size", "ToolStretch");
        pv(tool::ViewFitImage, "Fit Image to Window", "Fit Image to Window", "ToolStretch");
        pv(tool::ViewZoom, "", "Zoom in on Image", "ToolPictureView");
        pv(tool::ViewMagnify, "Magnify", "Magnify Areas of Picture", "ToolPictureView");
        pv(tool::ViewPan, "Pan Image", "Pan View of image", "ToolPictureView");
        v.push_back(bar(tool::EditImage, "Edit Image", "Edit Image - Ctrl K", 3));
        v.push_back(bar(tool::EditColors, "Edit Colors", "Edit Picture Colors - Ctrl M", 3));
        v.push_back(bar(tool::PrintImage, "Print Image", "Print Picture - Shift F10", 3));
        v.push_back(bar(tool::SaveImage, "Save Image", "Save Picture", 3));
        v.push_back(bar(tool::HelpImage, "", "Help with Picture Viewer and Editor", 3));
        v.push_back(bar(tool::Resize, "Resize", "Resize the Picture - Ctrl J", 3));
        v.push_back(bar(tool::PicFavorites, "Favorites", "Add Current Picture to Favorite List - Ctrl N", 3));

        // Toolbar 4: Player
        v.push_back(bar(tool::PlayBtn, "Play Video", "Play Video or Music - Ctrl Q", 4));
        v.push_back(bar(tool::Pause, "Pause", "Pause Video or Music from Playing - Ctrl U", 4));
        v.push_back(bar(tool::StopVideo, "Stop Video", "Stop Video or Music from Playing - Ctrl Z", 4));
        v.push_back(bar(tool::Sound, "Sound Control",
                        "Control Sound Volume Display for Video or Music Player - Ctrl F10", 4,
                        ToolKind::Check));
        v.push_back(bar(tool::Tracker, "Tracker Control", "Video or Music File Position Control - Ctrl F11",
                        4, ToolKind::Check));
        v.push_back(bar(tool::ListToggle, "Use File", "Toggle between Play List and Individual Files", 4,
                        ToolKind::Check));
        v.push_back(bar(tool::PlayHelp, "", "Display Help with Video and Music Player", 4));
        v.push_back(
            bar(tool::Status, "Status", "Display Media Player Status - Ctrl F12", 4, ToolKind::Check));

        // Toolbar 5: ToolText
        v.push_back(bar(tool::TxtBack, "Backward", "Go Back one Page - Shift F1", 5));
        v.push_back(bar(tool::TxtForward, "Forward", "Move Forward one Page - Shift F2", 5));
        v.push_back(bar(tool::TxtPrint, "Print Page", "Print current Document or Text - Shift F3", 5));
        v.push_back(bar(tool::TxtSave, "", "Save Text Page - Shift F4", 5));
        v.push_back(bar(tool::TxtProperties, "Properties", "View Text or Document Properties - Shift F5", 5));
        v.push_back(bar(tool::TxtHelp, "", "Help with Text and Document Display", 5));

        // Toolbars 6 and 7: ToolInternet, ToolInternetURL
        v.push_back(bar(tool::IntBack, "", "Move Back to Previous Page - Ctrl F1", 6));
        v.push_back(bar(tool::IntForward, "Forward", "Move Forward one Page - Ctrl F2", 6));
        v.push_back(bar(tool::IntHome, "", "Display current Home Web Page - Ctrl F3", 6));
        v.push_back(bar(tool::IntStop, "", "Stop Loading Web Page - Ctrl F4", 6));
        v.push_back(bar(tool::IntRefresh, "Refresh", "Refresh Current Web Page - Ctrl F5", 6));
        v.push_back(bar(tool::IntPrint, "Print", "Print Web Page - Ctrl F6", 6));
        v.push_back(bar(tool::IntSave, "", "Save current Web Page - Ctrl F7", 6));
        v.push_back(bar(tool::IntProperties, "Properties", "Display Web page Properties - Ctrl F9", 6));
        v.push_back(
            bar(tool::IntFavorites, "Favorites", "Display Favorite Internet Web Pages - Shift+Ctrl+F9", 6));
        v.push_back(
            bar(tool::IntAddFavorite, "", "Add Current Web Page to Internet Favorites - Shift+Ctrl+F10", 6));
        v.push_back(bar(tool::IntVisited, "Visited",
                        "Enter Web Site Page Address or Select from Visited Web Pages - Shift+Ctrl+F11", 6));
        v.push_back(bar(tool::IntHelp, "", "Display Help with Internet Tab", 6));
        v.push_back({tool::IntURLEnter, "Enter Web Site Address or Select from Visited Sites", "", "General",
                     "", 7, "", false, ToolKind::TextBox, ""});
        v.push_back(bar(tool::IntGo, "Go to Web Site", "Go to Web Site Page", 7));
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
