#include "core/file_copy.h"

#include <QCryptographicHash>
#include <QFile>
#include <filesystem>
#include <unistd.h>

namespace tw {

namespace fs = std::filesystem;

bool sameFileContents(const QString &a, const QString &b)
{
    QFile fa(a), fb(b);
    if (!fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly)) return false;
    if (fa.size() != fb.size()) return false;
    QCryptographicHash ha(QCryptographicHash::Sha256), hb(QCryptographicHash::Sha256);
    return ha.addData(&fa) && hb.addData(&fb) && ha.result() == hb.result();
}

CopyResult copyFileNoReplace(const QString &from, const QString &to, std::error_code *error)
{
    std::error_code scratch;
    std::error_code &ec = error ? *error : scratch;
    ec.clear();
    const fs::path src(QFile::encodeName(from).toStdString());
    const fs::path dst(QFile::encodeName(to).toStdString());
    if (!fs::is_regular_file(src, ec)) {
        if (!ec) ec = std::make_error_code(std::errc::no_such_file_or_directory);
        return CopyResult::Failed;
    }
    if (fs::exists(fs::symlink_status(dst, ec))) return CopyResult::TargetExists;
    ec.clear();
    const fs::path tmp =
        dst.parent_path() / (".tw-copy-" + std::to_string(::getpid()) + "-" + dst.filename().string());
    std::error_code ignore;
    fs::remove(tmp, ignore);
    if (!fs::copy_file(src, tmp, fs::copy_options::none, ec)
        || !sameFileContents(from, QFile::decodeName(tmp.c_str()))) {
        if (!ec) ec = std::make_error_code(std::errc::io_error);
        fs::remove(tmp, ignore);
        return CopyResult::Failed;
    }
    // The link fails when the name was taken meanwhile; a file system without links gets a
    // plain copy that still refuses to overwrite.
    fs::create_hard_link(tmp, dst, ec);
    if (ec) {
        const bool exists = ec == std::errc::file_exists;
        fs::remove(tmp, ignore);
        if (exists) {
            ec.clear();
            return CopyResult::TargetExists;
        }
        ec.clear();
        if (!fs::copy_file(src, dst, fs::copy_options::none, ec)) return CopyResult::Failed;
        return CopyResult::Copied;
    }
    fs::remove(tmp, ignore);
    return CopyResult::Copied;
}

}  // namespace tw
