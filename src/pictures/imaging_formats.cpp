#include "pictures/imaging_formats.h"

#include <QHash>

namespace tw {

int formatNumberOfCoder(const QString &coder, const QString &extension)
{
    static const QHash<QString, int> numbers{
        {QStringLiteral("PCX"), 1},    {QStringLiteral("GIF"), 2},    {QStringLiteral("TIFF"), 3},
        {QStringLiteral("TIF"), 3},    {QStringLiteral("TGA"), 4},    {QStringLiteral("BMP"), 6},
        {QStringLiteral("BMP2"), 14},  {QStringLiteral("BMP3"), 6},   {QStringLiteral("JPEG"), 10},
        {QStringLiteral("JPG"), 10},   {QStringLiteral("WMF"), 15},   {QStringLiteral("EPS"), 16},
        {QStringLiteral("PS"), 16},    {QStringLiteral("EPT"), 63},   {QStringLiteral("CALS"), 50},
        {QStringLiteral("MAC"), 51},   {QStringLiteral("GEM"), 52},   {QStringLiteral("IMG"), 52},
        {QStringLiteral("MSP"), 53},   {QStringLiteral("WPG"), 54},   {QStringLiteral("SUN"), 55},
        {QStringLiteral("PICT"), 56},  {QStringLiteral("PCD"), 57},   {QStringLiteral("DCX"), 58},
        {QStringLiteral("FAX"), 66},   {QStringLiteral("G3"), 66},    {QStringLiteral("G4"), 68},
        {QStringLiteral("PNG"), 75},   {QStringLiteral("PSD"), 76},   {QStringLiteral("FPX"), 80},
        {QStringLiteral("ICO"), 91},   {QStringLiteral("ICON"), 91},  {QStringLiteral("CUR"), 92},
        {QStringLiteral("PBM"), 102},  {QStringLiteral("PGM"), 105},  {QStringLiteral("PPM"), 107},
        {QStringLiteral("PNM"), 107},  {QStringLiteral("CUT"), 108},  {QStringLiteral("XPM"), 109},
        {QStringLiteral("XBM"), 110},  {QStringLiteral("IFF"), 112},  {QStringLiteral("XWD"), 113},
        {QStringLiteral("JBIG"), 115}, {QStringLiteral("JBG"), 115},  {QStringLiteral("BIE"), 115},
        {QStringLiteral("ANI"), 119},  {QStringLiteral("FLIC"), 134}, {QStringLiteral("SGI"), 142},
    };
    const QString c = coder.toUpper();
    // A cursor file reads through the icon decoder; its extension tells the two apart.
    if ((c == QLatin1String("ICO") || c == QLatin1String("ICON"))
        && extension.toUpper() == QLatin1String("CUR"))
        return 92;
    if (c == QLatin1String("FLIC") && extension.toUpper() == QLatin1String("FLI")) return 61;
    return numbers.value(c, 0);
}

QString coderOfFormatNumber(int format)
{
    switch (format) {
    case 1:
        return QStringLiteral("PCX");
    case 2:
        return QStringLiteral("GIF");
    case 3:
        return QStringLiteral("TIFF");
    case 4:
        return QStringLiteral("TGA");
    case 6:
    case 9:
        return QStringLiteral("BMP3");
    case 14:
        return QStringLiteral("BMP2");
    case 10:
    case 11:
    case 96:
        return QStringLiteral("JPEG");
    case 16:
        return QStringLiteral("EPS");
    case 50:
    case 129:
    case 130:
    case 131:
        return QStringLiteral("CALS");
    case 55:
        return QStringLiteral("SUN");
    case 56:
        return QStringLiteral("PICT");
    case 57:
        return QStringLiteral("PCD");
    case 58:
        return QStringLiteral("DCX");
    case 66:
    case 67:
    case 68:
        return QStringLiteral("FAX");
    case 75:
        return QStringLiteral("PNG");
    case 76:
        return QStringLiteral("PSD");
    case 91:
        return QStringLiteral("ICO");
    case 102:
    case 103:
        return QStringLiteral("PBM");
    case 105:
        return QStringLiteral("PGM");
    case 107:
        return QStringLiteral("PPM");
    case 109:
        return QStringLiteral("XPM");
    case 110:
        return QStringLiteral("XBM");
    case 113:
        return QStringLiteral("XWD");
    case 115:
        return QStringLiteral("JBIG");
    case 142:
        return QStringLiteral("SGI");
    default:
        return QString();
    }
}

QString GetImageFormatName(int format)
{
    switch (format) {
    case 1:
        return QStringLiteral("ZSoft PCX");
    case 2:
        return QStringLiteral("Graphics Interchange Format");
    case 3:
        return QStringLiteral("Tagged Image File Format");
    case 4:
        return QStringLiteral("Truevision TGA Format");
    case 5:
        return QStringLiteral("Lead Compressed");
    case 6:
        return QStringLiteral("Bitmap Format");
    case 9:
        return QStringLiteral("Bitmap Format");
    case 10:
        return QStringLiteral("JPEG File Interchange Format");
    case 11:
        return QStringLiteral("JPEG Tagged Interchange Format");
    case 12:
        return QStringLiteral("BIN Format");
    case 13:
        return QStringLiteral("File Handle");
    case 14:
        return QStringLiteral("OS2 Bitmap Format");
    case 15:
        return QStringLiteral("Meta File Format");
    case 16:
        return QStringLiteral("Encapsulated PostScript Format");
    case 17:
        return QStringLiteral("Tagged Image File LZW Compressed Format");
    case 20:
        return QStringLiteral("Lead Compressed Format");
    case 21:
        return QStringLiteral("Lead JPEG File Interchange Format");
    case 22:
        return QStringLiteral("Lead JPEG Tagged Interchange Format");
    case 23:
        return QStringLiteral("Lead JPEG File Interchange Format");
    case 24:
        return QStringLiteral("Lead JPEG Tagged Interchange Format");
    case 25:
        return QStringLiteral("CCITT compressed TIFF");
    case 26:
        return QStringLiteral("Lead 1 Bit Format");
    case 27:
    case 28:
    case 29:
        return QStringLiteral("CCITT compressed TIFF");
    case 30:
        return QStringLiteral("Lead Compressed Format");
    case 50:
        return QStringLiteral("CALS Raster Format");
    case 51:
        return QStringLiteral("MacPaint File Format");
    case 52:
        return QStringLiteral("Miscellaneous 1 Bit Format");
    case 53:
        return QStringLiteral("Microsoft Paint Format");
    case 54:
        return QStringLiteral("WordPerfect File Format");
    case 55:
        return QStringLiteral("Sun Raster Format");
    case 56:
        return QStringLiteral("Macintosh Pict Format");
    case 57:
        return QStringLiteral("Kodak PhotoCD Format");
    case 58:
        return QStringLiteral("Multipage PCX");
    case 60:
        return QStringLiteral("Wave Sound Files");
    case 61:
        return QStringLiteral("FLI Video");
    case 62:
        return QStringLiteral("CGM Format");
    case 63:
        return QStringLiteral("Encapsulated PostScript TIFF Format");
    case 64:
        return QStringLiteral("Encapsulated PostScript WMF Format");
    case 65:
        return QStringLiteral("Lead Compressed");
    case 66:
    case 67:
        return QStringLiteral("Fax Group 3");
    case 68:
        return QStringLiteral("Fax Group 4");
    case 69:
        return QStringLiteral("Win Fax Group 3");
    case 70:
        return QStringLiteral("Win Fax Group 4");
    case 71:
    case 72:
    case 73:
        return QStringLiteral("IBM IOCA Format");
    case 74:
        return QStringLiteral("OS2 Bitmap Format");
    case 75:
        return QStringLiteral("Portable Network Graphics");
    case 76:
        return QStringLiteral("Photoshop 3.0 Format");
    case 77:
    case 78:
    case 79:
        return QStringLiteral("Raw ICA Group 3");
    case 80:
    case 81:
    case 83:
        return QStringLiteral("Kodak FlashPix Format");
    case 82:
        return QStringLiteral("Kodak FlashPix JPEG Format");
    case 84:
        return QStringLiteral("Bitmap with RLE Compression");
    case 85:
    case 87:
    case 88:
    case 93:
    case 95:
        return QStringLiteral("Tagged Image File Format");
    case 86:
    case 94:
        return QStringLiteral("Tagged Image File LZW Compressed Forma");
    case 91:
        return QStringLiteral("Windows Icon Format");
    case 92:
        return QStringLiteral("Windows Cursor Format");
    case 96:
        return QStringLiteral("Exif Format");
    case 97:
        return QStringLiteral("Exif YCC Format");
    case 98:
    case 101:
        return QStringLiteral("Exif JPG Format");
    case 99:
        return QStringLiteral("Microsoft Fax Format");
    case 100:
        return QStringLiteral("Fastest Format");
    case 102:
    case 103:
        return QStringLiteral("Portable Bitmap Utilities Format");
    case 104:
        return QStringLiteral("PGM Ascii Format");
    case 105:
        return QStringLiteral("PGM Binary");
    case 106:
        return QStringLiteral("PPM Ascii Format");
    case 107:
        return QStringLiteral("PPM Binary Format");
    case 108:
        return QStringLiteral("Dr. Halo Format");
    case 109:
    case 110:
        return QStringLiteral("XBitMap Monochrome Bitmap");
    case 111:
    case 112:
        return QStringLiteral("Interchange File Format");
    case 113:
        return QStringLiteral("XWD File Format");
    case 114:
        return QStringLiteral("CLP Format");
    case 115:
        return QStringLiteral("JBIG Format");
    case 116:
        return QStringLiteral("EMF MetaFile Format");
    case 117:
        return QStringLiteral("IBM IOCA Format");
    case 118:
        return QStringLiteral("Raw ICA Group 3");
    case 119:
        return QStringLiteral("ANI File Format");
    case 120:
        return QStringLiteral("ANI with RLE Compression");
    case 121:
        return QStringLiteral("Laser Data Format");
    case 122:
        return QStringLiteral("Intergraph File RLE Compressed Format");
    case 123:
        return QStringLiteral("Intergraph Vector Format");
    case 124:
        return QStringLiteral("DWG Format");
    case 129:
    case 130:
    case 131:
        return QStringLiteral("CALS Raster Format");
    case 134:
        return QStringLiteral("Flic Animation");
    case 136:
        return QStringLiteral("DRW Format");
    case 137:
        return QStringLiteral("Hewlett Packard Graphics Language");
    case 142:
        return QStringLiteral("Silicon Graphics Image");
    default:
        return QStringLiteral("Unknown format");
    }
}

}  // namespace tw
