#include "errors.h"

#include <cerrno>

namespace tw {

QString errorDescription(int number)
{
    switch (number) {
    case 5:
        return QStringLiteral("Invalid procedure call or argument");
    case 6:
        return QStringLiteral("Overflow");
    case 7:
        return QStringLiteral("Out of memory");
    case 9:
        return QStringLiteral("Subscript out of range");
    case 11:
        return QStringLiteral("Division by zero");
    case 13:
        return QStringLiteral("Type mismatch");
    case 52:
        return QStringLiteral("Bad file name or number");
    case 53:
        return QStringLiteral("File not found");
    case 54:
        return QStringLiteral("Bad file mode");
    case 55:
        return QStringLiteral("File already open");
    case 57:
        return QStringLiteral("Device I/O error");
    case 58:
        return QStringLiteral("File already exists");
    case 61:
        return QStringLiteral("Disk full");
    case 62:
        return QStringLiteral("Input past end of file");
    case 67:
        return QStringLiteral("Too many files");
    case 68:
        return QStringLiteral("Device unavailable");
    case 70:
        return QStringLiteral("Permission denied");
    case 71:
        return QStringLiteral("Disk not ready");
    case 75:
        return QStringLiteral("Path/File access error");
    case 76:
        return QStringLiteral("Path not found");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}

int errorNumberFromErrno(int err)
{
    switch (err) {
    case ENOENT:
        return ErrFileNotFound;
    case ENOTDIR:
        return ErrPathNotFound;
    case EEXIST:
        return ErrFileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
        return ErrDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
        return ErrPermissionDenied;
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
        return ErrDeviceUnavailable;
    case EIO:
        return 57;
    case EMFILE:
    case ENFILE:
        return 67;
    default:
        return ErrPathFileAccess;
    }
}

int errorNumberFromStd(const std::error_code &ec)
{
    if (ec.category() == std::generic_category() || ec.category() == std::system_category())
        return errorNumberFromErrno(ec.value());
    return ErrPathFileAccess;
}

QString unexpectedErrorText(int number)
{
    return QStringLiteral("Error - ") + QString::number(number) + QStringLiteral(" - ")
        + errorDescription(number);
}

}  // namespace tw
