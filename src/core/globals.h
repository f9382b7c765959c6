// Shared session state of the program: the public variables that every window
// reads and writes directly, the dialog flags, and the stored options and colours.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace tw {

inline const QString AppTitle = QStringLiteral("Tarnwick 2.0");

struct ColorSettings {
    // Colors.INI, field order 1..30.
    uint32_t ServiceBack = 0x808080, ServiceText = 0x000000;
    uint32_t MenuBack = 0x80000004, MenuText = 0xC00000;
    uint32_t TabBack = 0x80000004, TabText = 0x800000;
    uint32_t ListBack = 0x80000017, ListText = 0x800000;
    uint32_t EntryBack = 0xE0E0E0, EntryText = 0x404040;
    uint32_t SelectionBack = 0x008000, SelectionText = 0xFFFFFF;
    uint32_t ThumbBack = 0xFF8080, ThumbText = 0x800000;
    uint32_t SpareBack = 0xC0E0FF, SpareText = 0x004080;
    uint32_t ThumbWindowBack = 0x008000, ThumbWindowText = 0x8080FF;
    uint32_t PictureBack = 0xFF8080, PictureText = 0x000000;
    uint32_t VideoBack = 0xC0FFC0, VideoText = 0x000000;
    uint32_t MusicBack = 0xC0C0FF, MusicText = 0x000000;
    uint32_t DocumentBack = 0x404040, DocumentText = 0xFFFFFF;
    uint32_t InternetBack = 0xC000C0, InternetText = 0xFFFFC0;
    uint32_t ButtonBack = 0xC0C0C0, ButtonText = 0x000000;
    // Not stored: the slide-show panels.
    uint32_t SlideBack = 0xC0C0C0, SlideText = 0x000000;

    static constexpr int Count = 30;
    uint32_t &field(int i);  // 0-based field of Colors.INI
    uint32_t field(int i) const { return const_cast<ColorSettings *>(this)->field(i); }
};

struct OptionSettings {
    // Options.INI line 1
    double WindowLeft = 0, WindowTop = 100, WindowHeight = 8000, WindowWidth = 10500;
    double MenuFontType = 0, MenuStyle = 2;
    int16_t LabelTextStyle = 0;
    double ThumbCellHeight = 115, ThumbCellWidth = 115, ThumbResolution = 2;
    int16_t SplitterPercent = 40;
    double ListViewMode = 0, InitialSearchLimit = 5000;
    int32_t NextSearchLimit = 500;
    double JpegQuality = 9;
    // line 2 and 3
    QString LocalComputerName;
    QString LastFolder;
    // line 4
    bool BoldFonts = false, SaveLastFolder = true, ShowQuickTips = true, ComputerNameUnset = true,
         ListOptionFlag = false, DocumentsAsSource = false, AutoPicture = true, AutoPlayVideo = true,
         AutoPlayMusic = true, VideoLoopDefault = false, MusicLoopDefault = false, VideoListAtStart = true;
    static constexpr int FlagCount = 12;
    bool &flag(int i);  // 0-based field of line 4
};

struct Globals {
    QString ProgramDir;
    QString SelectedFile;
    QString CurrentExt;
    QString CurrentFile;
    int32_t CurrentPage = 1;
    QString CurrentPlayer = QStringLiteral("0");
    int16_t CurrentFilterRow = 35;
    bool SuppressToolCommand = false;
    bool SwitchToFileTab = true;
    bool FromInternet = false;
    bool InternetPictureLoaded = false;
    bool QuickTipsOpen = false;
    QString CurrentUrl, CurrentUrlName;  // the web page asked for, and its name
    QString EditedFile;
    bool SlideShowOnFolder = false;
    bool RunFromBuilder = false;

    // Dialog flags: set by a dialog's open, cleared by its close.
    bool Select1Loaded = false, Select1Visible = false, FindFle1Loaded = false, GetURL1Loaded = false,
         ProPert1Loaded = false, PrntPict1Loaded = false, SetFavList1Loaded = false,
         SelFavorites1Loaded = false, IntFavorites1Loaded = false, EdtImage1Loaded = false,
         EdtColors1Loaded = false, About1Loaded = false;
    // Who opened the favorite list browser: the slide-show builder, the selection list.
    bool FavBrowserFromSlideShow = false, FavBrowserFromSelection = false;

    // Play-list state read by the tab change.
    bool VideoListChanged = false, MusicListChanged = false;
    QString VideoListName, MusicListName;

    ColorSettings Colors;
    OptionSettings Options;
};

// The one instance, like the module of public variables it stands for.
extern Globals G;

// Raises SuppressToolCommand for as long as it lives and then puts back the value it had,
// so that a routine that sets tools from code inside another keeps it on for its caller.
class SuppressTools {
public:
    SuppressTools() : was_(G.SuppressToolCommand) { G.SuppressToolCommand = true; }
    ~SuppressTools() { G.SuppressToolCommand = was_; }
    SuppressTools(const SuppressTools &) = delete;
    SuppressTools &operator=(const SuppressTools &) = delete;

private:
    bool was_;
};

// Text form of a shared variable by its name (strings as they are, numbers in plain
// decimal, booleans "true"/"false"); false when the name is unknown.
bool globalVariableText(const QString &name, QString *out);

}  // namespace tw
