// The codec module's one exported symbol: the table of its entry points.
#include "pictures/codecs/codec_table.h"

namespace {
const tw::CodecTable kTable = {
    tw::CodecTableVersion,
    &tw::magick::initialise,
    &tw::magick::read,
    &tw::magick::readBlob,
    &tw::magick::ping,
    &tw::magick::canWrite,
    &tw::magick::canRead,
    &tw::magick::resample,
    &tw::magick::brightnessContrast,
    &tw::magick::areaLimit,
    &tw::magick::sideLimit,
    &tw::decodeWithAv,
    &tw::magick::readProfiles,
    &tw::magick::encodeWithProfiles,
    &tw::magick::exifFacts,
    &tw::magick::setPixelAllocator,
};
}  // namespace

extern "C" __attribute__((visibility("default"))) const tw::CodecTable *tw_codec_table() { return &kTable; }
