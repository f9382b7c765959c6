// Colors.INI as any bytes: read, written back, and the file written reads back the same.
#include "core/options_store.h"
#include "settings_fuzz.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    putSettingsFile("Colors.INI", data, size);
    const QString dir = fuzzProgramDir();
    tw::ColorSettings c;
    tw::SetDefaultColors(c);
    tw::LoadColors(c, dir);
    if (!tw::SaveColors(c, dir).ok) return 0;
    tw::ColorSettings back;
    if (!tw::LoadColors(back, dir).ok) std::abort();
    for (int i = 0; i < tw::ColorSettings::Count; ++i)
        if (back.field(i) != c.field(i)) std::abort();
    QFile::remove(dir + QStringLiteral("/Colors.INI.bak"));
    return 0;
}
