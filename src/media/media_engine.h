// The media engine module: libmpv, FluidSynth and libcdio bring some two hundred shared
// libraries with them. They live in a module of their own (libtw_mediaengine.so) that the
// program loads when the first media file arrives, so that its start stays as light as a
// plain Qt program's. The module hands over one table: mpv's client and render calls, the
// MIDI synthesiser and the CD device.
#pragma once

#include <QString>
#include <mpv/client.h>
#include <mpv/render.h>

namespace tw {

class MciDevice;

struct MediaEngineTable {
    int version;
    decltype(&mpv_create) create;
    decltype(&mpv_initialize) initialize;
    decltype(&mpv_set_option_string) set_option_string;
    decltype(&mpv_command) command;
    decltype(&mpv_set_property) set_property;
    decltype(&mpv_get_property) get_property;
    decltype(&mpv_observe_property) observe_property;
    decltype(&mpv_wait_event) wait_event;
    decltype(&mpv_set_wakeup_callback) set_wakeup_callback;
    decltype(&mpv_terminate_destroy) terminate_destroy;
    decltype(&mpv_render_context_create) render_create;
    decltype(&mpv_render_context_set_update_callback) render_set_update_callback;
    decltype(&mpv_render_context_update) render_update;
    decltype(&mpv_render_context_render) render_render;
    decltype(&mpv_render_context_free) render_free;
    // The MIDI data rendered with the sound font into a WAV file; false when it gave no sound.
    bool (*synthesise)(const QByteArray &midi, const QString &soundFont, const QString &wavPath);
    // One command of the CD device (see MciDevice).
    bool (*mciCommand)(MciDevice &device, const QString &command);
};

constexpr int MediaEngineVersion = 1;
constexpr const char *MediaEngineSymbol = "tw_media_engine_table";

// The table, the module loaded on the first call; null when the module cannot be loaded.
const MediaEngineTable *mediaEngine();
// Whether the module has been loaded (the start-up leaves it alone).
bool mediaEngineLoaded();

}  // namespace tw
