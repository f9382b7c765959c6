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
    // A comma or a line end inside the folder or computer name legitimately cuts it short;
    // otherwise what was written reads back.
    const bool plain = !o.LastFolder.contains(QLatin1Char(','))
        && !o.LocalComputerName.contains(QLatin1Char(',')) && !o.LastFolder.contains(QLatin1Char('"'))
        && !o.LocalComputerName.contains(QLatin1Char('"')) && !o.LastFolder.contains(QLatin1Char('\n'))
        && !o.LocalComputerName.contains(QLatin1Char('\n')) && !o.LastFolder.contains(QLatin1Char('\r'))
        && !o.LocalComputerName.contains(QLatin1Char('\r')) && !o.LastFolder.isEmpty()
        && !o.LocalComputerName.isEmpty();
    const tw::StoreResult r = tw::LoadOptions(back, dir);
    if (plain && !r.ok) std::abort();
    QFile::remove(dir + QStringLiteral("/Options.INI.bak"));
    return 0;
}
