// The files that ship with the program (tool images, tips, help) copied into the
// per-user program folder, so the user can edit them.
#pragma once

#include <QString>

namespace tw {

// Copies every shipped file that the program folder does not hold yet; false when the
// folder cannot be written.
bool installProgramResources(const QString &programDir);
// Where the compiled help collection of this build lies.
QString shippedHelpDir();

}  // namespace tw
