// Copying a file without ever replacing what is there: the copy is made under a temporary
// name beside the target, checked against the source, and only then given the target's
// name, which fails if that name is taken. A full disk or a failing read leaves no target.
#pragma once

#include <QString>
#include <system_error>

namespace tw {

enum class CopyResult { Copied, TargetExists, Failed };

// `error` tells why on Failed (no such file, disk full, permission denied, ...).
CopyResult copyFileNoReplace(const QString &from, const QString &to, std::error_code *error = nullptr);
// True when both files hold the same bytes.
bool sameFileContents(const QString &a, const QString &b);

}  // namespace tw
