#include "globals.h"

#include <functional>
#include <map>

namespace tw {

Globals G;

uint32_t &ColorSettings::field(int i)
{
    uint32_t *f[Count] = {&ServiceBack,   &ServiceText,     &MenuBack,        &MenuText,    &TabBack,
                          &TabText,       &ListBack,        &ListText,        &EntryBack,   &EntryText,
                          &SelectionBack, &SelectionText,   &ThumbBack,       &ThumbText,   &SpareBack,
                          &SpareText,     &ThumbWindowBack, &ThumbWindowText, &PictureBack, &PictureText,
                          &VideoBack,     &VideoText,       &MusicBack,       &MusicText,   &DocumentBack,
                          &DocumentText,  &InternetBack,    &InternetText,    &ButtonBack,  &ButtonText};
    return *f[i];
}

bool &OptionSettings::flag(int i)
{
    bool *f[FlagCount] = {&BoldFonts,      &SaveLastFolder,    &ShowQuickTips,    &ComputerNameUnset,
                          &ListOptionFlag, &DocumentsAsSource, &AutoPicture,      &AutoPlayVideo,
                          &AutoPlayMusic,  &VideoLoopDefault,  &MusicLoopDefault, &VideoListAtStart};
    return *f[i];
}

namespace {
QString num(double v) { return QString::number(v, 'g', 15); }
QString b(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }
}  // namespace

bool globalVariableText(const QString &name, QString *out)
{
    const Globals &g = G;
    const OptionSettings &o = g.Options;
    const std::map<QString, std::function<QString()>> table = {
        {"ProgramDir", [&] { return g.ProgramDir; }},
        {"SelectedFile", [&] { return g.SelectedFile; }},
        {"CurrentExt", [&] { return g.CurrentExt; }},
        {"CurrentFile", [&] { return g.CurrentFile; }},
        {"CurrentPage", [&] { return num(g.CurrentPage); }},
        {"CurrentPlayer", [&] { return g.CurrentPlayer; }},
        {"CurrentFilterRow", [&] { return num(g.CurrentFilterRow); }},
        {"SuppressToolCommand", [&] { return b(g.SuppressToolCommand); }},
        {"SwitchToFileTab", [&] { return b(g.SwitchToFileTab); }},
        {"FromInternet", [&] { return b(g.FromInternet); }},
        {"InternetPictureLoaded", [&] { return b(g.InternetPictureLoaded); }},
        {"QuickTipsOpen", [&] { return b(g.QuickTipsOpen); }},
        {"CurrentUrl", [&] { return g.CurrentUrl; }},
        {"CurrentUrlName", [&] { return g.CurrentUrlName; }},
        {"EditedFile", [&] { return g.EditedFile; }},
        // The file under edit goes by both names in the program's own talk.
        {"EditFile", [&] { return g.EditedFile; }},
        {"SlideShowOnFolder", [&] { return b(g.SlideShowOnFolder); }},
        {"Select1Loaded", [&] { return b(g.Select1Loaded); }},
        {"Select1Visible", [&] { return b(g.Select1Visible); }},
        {"FindFle1Loaded", [&] { return b(g.FindFle1Loaded); }},
        {"GetURL1Loaded", [&] { return b(g.GetURL1Loaded); }},
        {"ProPert1Loaded", [&] { return b(g.ProPert1Loaded); }},
        {"PrntPict1Loaded", [&] { return b(g.PrntPict1Loaded); }},
        {"SetFavList1Loaded", [&] { return b(g.SetFavList1Loaded); }},
        {"SelFavorites1Loaded", [&] { return b(g.SelFavorites1Loaded); }},
        {"FavBrowserFromSlideShow", [&] { return b(g.FavBrowserFromSlideShow); }},
        {"FavBrowserFromSelection", [&] { return b(g.FavBrowserFromSelection); }},
        {"IntFavorites1Loaded", [&] { return b(g.IntFavorites1Loaded); }},
        {"EdtImage1Loaded", [&] { return b(g.EdtImage1Loaded); }},
        {"EdtColors1Loaded", [&] { return b(g.EdtColors1Loaded); }},
        {"About1Loaded", [&] { return b(g.About1Loaded); }},
        {"VideoListChanged", [&] { return b(g.VideoListChanged); }},
        {"MusicListChanged", [&] { return b(g.MusicListChanged); }},
        {"VideoListName", [&] { return g.VideoListName; }},
        {"MusicListName", [&] { return g.MusicListName; }},
        {"WindowLeft", [&] { return num(o.WindowLeft); }},
        {"WindowTop", [&] { return num(o.WindowTop); }},
        {"WindowHeight", [&] { return num(o.WindowHeight); }},
        {"WindowWidth", [&] { return num(o.WindowWidth); }},
        {"MenuFontType", [&] { return num(o.MenuFontType); }},
        {"MenuStyle", [&] { return num(o.MenuStyle); }},
        {"LabelTextStyle", [&] { return num(o.LabelTextStyle); }},
        {"ThumbCellHeight", [&] { return num(o.ThumbCellHeight); }},
        {"ThumbCellWidth", [&] { return num(o.ThumbCellWidth); }},
        {"ThumbResolution", [&] { return num(o.ThumbResolution); }},
        {"SplitterPercent", [&] { return num(o.SplitterPercent); }},
        {"ListViewMode", [&] { return num(o.ListViewMode); }},
        {"InitialSearchLimit", [&] { return num(o.InitialSearchLimit); }},
        {"NextSearchLimit", [&] { return num(o.NextSearchLimit); }},
        {"JpegQuality", [&] { return num(o.JpegQuality); }},
        {"LocalComputerName", [&] { return o.LocalComputerName; }},
        {"LastFolder", [&] { return o.LastFolder; }},
        {"BoldFonts", [&] { return b(o.BoldFonts); }},
        {"SaveLastFolder", [&] { return b(o.SaveLastFolder); }},
        {"ShowQuickTips", [&] { return b(o.ShowQuickTips); }},
        {"ComputerNameUnset", [&] { return b(o.ComputerNameUnset); }},
        {"ListOptionFlag", [&] { return b(o.ListOptionFlag); }},
        {"DocumentsAsSource", [&] { return b(o.DocumentsAsSource); }},
        {"AutoPicture", [&] { return b(o.AutoPicture); }},
        {"AutoPlayVideo", [&] { return b(o.AutoPlayVideo); }},
        {"AutoPlayMusic", [&] { return b(o.AutoPlayMusic); }},
        {"VideoLoopDefault", [&] { return b(o.VideoLoopDefault); }},
        {"MusicLoopDefault", [&] { return b(o.MusicLoopDefault); }},
        {"VideoListAtStart", [&] { return b(o.VideoListAtStart); }},
    };
    auto it = table.find(name);
    if (it != table.end()) {
        *out = it->second();
        return true;
    }
    for (int i = 0; i < ColorSettings::Count; ++i) {
        static const char *names[ColorSettings::Count] = {
            "ServiceBack",   "ServiceText",     "MenuBack",        "MenuText",    "TabBack",
            "TabText",       "ListBack",        "ListText",        "EntryBack",   "EntryText",
            "SelectionBack", "SelectionText",   "ThumbBack",       "ThumbText",   "SpareBack",
            "SpareText",     "ThumbWindowBack", "ThumbWindowText", "PictureBack", "PictureText",
            "VideoBack",     "VideoText",       "MusicBack",       "MusicText",   "DocumentBack",
            "DocumentText",  "InternetBack",    "InternetText",    "ButtonBack",  "ButtonText"};
        if (name == QLatin1String(names[i])) {
            // A colour is a signed 32-bit number, as the settings file holds it.
            *out = QString::number(static_cast<int32_t>(g.Colors.field(i)));
            return true;
        }
    }
    return false;
}

}  // namespace tw
