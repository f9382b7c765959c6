// Where the program's print commands print. With no output file set, the printer the user
// chooses; with one set (test runs, through the scenario routine PrintToFile), a PDF file at
// that path, with no dialog.
#pragma once

#include <QString>

namespace tw {

QString &printOutputFile();
// The routine PrintToFile "<path>", reachable by name from a scenario.
void registerPrintTargetRoutine();

}  // namespace tw
