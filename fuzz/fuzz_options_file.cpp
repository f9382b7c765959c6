// Options.INI as any bytes: read (with the defaults under it), written back, and read again.
// The file written must always read back.
#include "core/options_store.h"
#include "settings_fuzz.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    putSettingsFile("Options.INI", data, size);
    const QString dir = fuzzProgramDir();
    tw::OptionSettings o;
    tw::SetDefaultOptions(o, dir);
    tw::LoadOptions(o, dir);
    if (!tw::SaveOptions(o, dir).ok) return 0;
    tw::OptionSettings back;
    tw::SetDefaultOptions(back, dir);
    // A comma, a quote or a line end inside the folder or computer name legitimately cuts it
    // short, and a Ctrl-Z (end of text, readable inside quotes) ends the file written: names
    // with those are not expected to read back; all others are.
    auto plainName = [](const QString &n) {
        if (n.isEmpty()) return false;
        for (const QChar c : n)
            if (c == u',' || c == u'"' || c == u'\n' || c == u'\r' || c == QChar(0x1a)) return false;
        return true;
    };
    const bool plain = plainName(o.LastFolder) && plainName(o.LocalComputerName);
    const tw::StoreResult r = tw::LoadOptions(back, dir);
    if (plain && !r.ok) std::abort();
    QFile::remove(dir + QStringLiteral("/Options.INI.bak"));
    return 0;
}
