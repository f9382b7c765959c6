// The program's modules: shared libraries kept beside the program (the build's lib/ folder,
// or lib/tarnwick where the installation puts them) and loaded the first time a feature
// needs them, so that start-up neither loads nor relocates the libraries they bring.
#pragma once

#include <QString>

namespace tw {

// Where a file that lives beside the program's modules is, or an empty string. Used for the
// modules themselves and for the helper programs installed with them.
QString programModuleFile(const QString &fileName);

// Loads the module and resolves its entry point. The module stays loaded for the life of the
// process. On failure returns nullptr and *error says why (the file missing, or the loader's
// message).
void *resolveModuleEntry(const QString &fileName, const char *symbol, QString *error = nullptr);

// Calls a module's entry point that hands out its table of functions.
template <class Table>
const Table *moduleTable(const QString &fileName, const char *symbol, QString *error = nullptr)
{
    using Entry = const Table *(*)();
    auto entry = reinterpret_cast<Entry>(resolveModuleEntry(fileName, symbol, error));
    return entry ? entry() : nullptr;
}

}  // namespace tw
