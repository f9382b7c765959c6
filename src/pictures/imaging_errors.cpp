#include "pictures/imaging_errors.h"

#include <array>

namespace tw {

namespace {

struct Row {
    int32_t low, high;  // inclusive range, walked first match
    const char *text;
};

// First match wins. The "Internal Error" row has its bounds reversed (20062 down to 20030),
// so no code falls inside it and its text never shows; the codes of that stretch give "".
constexpr std::array<Row, 51> kRows{{
    {20000, 20000, "General failure"},
    {20001, 20001, "Not enough memory available"},
    {20002, 20002, "Invalid bitmap handle"},
    {20003, 20003, "Not enough memory available"},
    {20004, 20004, "Error seeking to position"},
    {20005, 20005, "Error writing file"},
    {20006, 20006, "File not present - abort"},
    {20007, 20007, "Error reading file"},
    {20008, 20008, "Invalid filename specified"},
    {20009, 20009, "Invalid file format"},
    {20010, 20010, "File not found"},
    {20011, 20011, "Invalid width/height"},
    {20012, 20012, "Image format recognized, but sub-type not supported"},
    {20013, 20013, "Invalid parmameter passed"},
    {20014, 20014, "Not able to open file"},
    {20015, 20015, "Unknown compression format"},
    {20016, 20016, "Not available for file format requested"},
    {20017, 20017, "VGA card only supports 256 colors (8 bit)"},
    {20018, 20018, "Printer error"},
    {20019, 20019, "Data CRC check error"},
    {20021, 20021, "Invalid QFactor specified"},
    {20022, 20022, "TARGA not installed"},
    {20023, 20023, "Invalid compression format"},
    {20024, 20024, "X origin specified invalid"},
    {20025, 20025, "Y origin specified invalid"},
    {20026, 20026, "Invalid video mode"},
    {20027, 20027, "Invalid bits/pixel"},
    {20028, 20028, "Invalid window size"},
    {20029, 20029, "Escape key pressed"},
    {20062, 20030, "Internal Error - Call LEAD"},
    {20063, 20063, "Fixed palette data not found"},
    {20064, 20064, "Fixed palette data not found"},
    {20065, 20065, "Stamp not found"},
    {20070, 20070, "Invalid group 3 code"},
    {20071, 20071, "Group3 code end of file"},
    {20072, 20072, "Group3 code end of code"},
    {20073, 20073, "Premature EOF at scanline"},
    {20077, 20077, "Premature end-of-line code"},
    {20078, 20078, "Bad version number"},
    {20079, 20079, "Twain source manager not found"},
    {20080, 20080, "Twain failure due to unknown causes"},
    {20081, 20081, "Twain not enough memory to perform operation"},
    {20082, 20082, "Twain no Data Source"},
    {20083, 20083, "Twain DS is connected to max possible apps"},
    {20084, 20084, "Twain DS or DSM reported error, app shouldn't"},
    {20085, 20085, "Twain unknown capability"},
    {20086, 20086, "Twain unrecognized MSG DG DAT combination"},
    {20087, 20087, "Twain data parameter out of range"},
    {20088, 20088, "Twain DG DAT MSG out of expected sequence"},
    {20089, 20089, "Twain unknown destination App/Src in DSM_Entry"},
    {20090, 20090, "Twain operation was cancelled"},
}};

}  // namespace

QString GetImagingErrorText(int32_t code)
{
    for (const Row &r : kRows) {
        if (code >= r.low && code <= r.high) return QString::fromLatin1(r.text);
    }
    return QString();
}

QString imagingErrorMessage(int32_t code)
{
    return QStringLiteral("Error '") + QString::number(code) + QStringLiteral(", ")
        + GetImagingErrorText(code) + QStringLiteral("' was generated.");
}

}  // namespace tw
