// The files that ship with the program (tool images, tips, help) copied into the
// per-user program folder, so the user can edit them.
#pragma once

#include <QString>

namespace tw {

// Copies every shipped file that the program folder does not hold yet; false when the
// folder cannot be written or the shipped files cannot be found.
bool installProgramResources(const QString &programDir);
// The folder of shipped files: share/tarnwick beside the program's bin folder, in the
// build tree as once installed. Empty when it cannot be found.
QString shippedDataDir();

}  // namespace tw
