// Start-up helpers that need no window: the command line, the program folder and the
// computer name rules.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

struct CommandLine {
    QStringList Args;  // the arguments found, cut to their number
    QString CommandArg[6];  // CommandArg1 .. CommandArg6
};

// Splits the raw command line at blanks and tabs; at most MaxArgs arguments are started.
CommandLine GetCommandLine(const QString &raw, int maxArgs = 10);
// The six words joined with one blank, trimmed; a text of more than two characters that
// begins with a double quote loses its first and its last character.
QString JoinCommandLine(const CommandLine &cl);
// The raw command line of this process: the arguments joined with one blank each.
QString rawCommandLine(const QStringList &argumentsWithoutProgram);

// The per-user program folder: $XDG_DATA_HOME/tarnwick, or ~/.local/share/tarnwick.
QString FindProgramDir();

// The name the system gives this computer, upper-cased; empty when refused.
QString systemComputerName();
// Cuts the answer of the computer-name browser: at the tenth blank counted from the
// left keep what stands in front of that position minus 10; with fewer blanks drop
// nine characters from the end.
QString cutComputerNameAnswer(const QString &answer);

}  // namespace tw
