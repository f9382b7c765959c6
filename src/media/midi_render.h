// MIDI (.MID, and .RMI, a RIFF wrapper around the same data) rendered to sound through
// FluidSynth with the General MIDI sound font of the system, so that the player plays it
// like any other sound file. The rendering runs far faster than real time.
#pragma once

#include <QByteArray>
#include <QString>

namespace tw {

// The path of a WAV file holding the rendering of a MIDI file (made once per file and change
// time, in the user's cache folder); "" when the file cannot be read or rendered.
QString renderMidi(const QString &midiPath);
// The standard MIDI data inside an RMI file (its "data" chunk); the bytes unchanged otherwise.
QByteArray midiData(const QByteArray &bytes);
// The sound font used: the first General MIDI font found.
QString soundFontPath();

}  // namespace tw
