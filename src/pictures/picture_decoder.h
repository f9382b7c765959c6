// Turns a file into a picture. Qt's readers take JPEG, PNG, BMP, GIF and TIFF (they are
// the fastest and have no side limit); animated cursors and FLIC, IFF, GEM IMG, MSP and
// PICT go through the frame decoders; ImageMagick takes everything else. Damage, text in
// a picture's clothing and pictures too large for memory all come back as a status code.
#pragma once

#include "pictures/imaging_control.h"

#include <QString>

namespace tw {

// Decodes page `page` (1-based, 0 counts as 1) or, with allPages, every page or frame.
// 0 or an imaging status code.
int decodePictureFile(const QString &path, int page, bool allPages, Picture *out, QString *detail = nullptr);
// The facts of one page of a file. 0 or an imaging status code.
int readPictureFacts(const QString &path, int page, FileFacts *out, QString *detail = nullptr);
// The largest picture, in pixels, that is decoded: ImageMagick's area limit in force.
int64_t pictureAreaLimit();
// Decodes an icon or cursor file held in memory (the frames of an animated cursor).
QImage decodeIconData(const QByteArray &data);

}  // namespace tw
