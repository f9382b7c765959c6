// The runner's picture decoder: the picture subsystem's decode of the first page. The runner
// reaches it only through the SlideDecoder function, so the decode may move elsewhere (out of
// the process) without the runner changing.
#include "pictures/picture_decoder.h"
#include "slideshow/slide_runner.h"

namespace tw::slides {

void installDefaultSlideDecoder()
{
    if (slideDecoder()) return;
    setSlideDecoder([](const QString &path, QImage *out) {
        Picture pic;
        if (decodePictureFile(path, 1, false, &pic) != 0 || pic.isNull()) return false;
        *out = pic.frames.first();
        return true;
    });
}

}  // namespace tw::slides
