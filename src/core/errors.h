// The program's error vocabulary: failures of the file system are mapped onto the
// numbers that the program's logic branches on, each with its fixed English text.
#pragma once

#include <QString>
#include <system_error>

namespace tw {

enum ErrorNumber : int {
    ErrFileNotFound = 53,
    ErrFileAlreadyExists = 58,
    ErrDiskFull = 61,
    ErrDeviceUnavailable = 68,
    ErrPermissionDenied = 70,
    ErrPathFileAccess = 75,
    ErrPathNotFound = 76,
};

// The fixed description of an error number ("File not found", ...).
QString errorDescription(int number);
// Maps a POSIX errno onto the error numbers above.
int errorNumberFromErrno(int err);
int errorNumberFromStd(const std::error_code &ec);
// "Error - " + number + " - " + description: the form of an unexpected error.
QString unexpectedErrorText(int number);

}  // namespace tw
