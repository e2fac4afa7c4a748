// QSaveFile of Qt 6.4 would be shorter, but it renames a file that a full disk has cut short.

#include "platform/linux/replaceFile.h"

#include "discovery/FileDescriptor.h"
#include "platform/errorText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

/// Where the links at `path` lead, though nothing be there yet.
QString targetOf(QString path) {
    constexpr int mostLinks = 32;
    for (int i = 0; i < mostLinks; ++i) {
        const QFileInfo info(path);
        if (!info.isSymLink())
            break;
        path = info.symLinkTarget();
    }
    return path;
}

bool writeAll(int descriptor, QByteArrayView content) {
    while (!content.isEmpty()) {
        const ssize_t written = write(descriptor, content.data(), static_cast<std::size_t>(content.size()));
        if (written < 0 && errno != EINTR)
            return false;
        content = content.sliced(std::max<ssize_t>(written, 0));
    }
    return true;
}

/// The permissions that the new file takes over; nothing when the old one may not be written.
std::optional<mode_t> permissionsFor(const std::string &path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return S_IRUSR | S_IWUSR;
    if (S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0)
        return status.st_mode & ALLPERMS;
    errno = S_ISREG(status.st_mode) ? errno : EISDIR;
    return std::nullopt;
}

/// Makes the file `part`, a name for mkstemp(3), and gives it the name `path` once all of it is on the disk.
/// Returns 0 or the `errno` of what failed.
int writeBeside(const std::string &path, std::string &part, const QByteArray &content) {
    const auto permissions = permissionsFor(path);
    if (!permissions)
        return errno;
    const FileDescriptor descriptor(mkostemp(part.data(), O_CLOEXEC));
    if (!descriptor.isOpen())
        return errno;
    if (writeAll(descriptor.get(), content) && fchmod(descriptor.get(), *permissions) == 0 &&
        fsync(descriptor.get()) == 0 && rename(part.c_str(), path.c_str()) == 0)
        return 0;
    const int error = errno;
    unlink(part.c_str());
    return error;
}

} // namespace

std::optional<QByteArray> readRegularFile(const QString &path, qint64 limit) {
    const FileDescriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!descriptor.isOpen())
        return errno == ENOENT ? std::optional(QByteArray()) : std::nullopt;
    struct stat status {};
    if (fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    QFile file;
    if (!file.open(descriptor.get(), QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.read(limit + 1);
    const bool isWhole = file.error() == QFileDevice::NoError && content.size() <= limit;
    return isWhole ? std::optional(content) : std::nullopt;
}

std::expected<void, std::string> replaceFile(const QString &path, const QByteArray &content) {
    const QString target = targetOf(path);
    const QString folder = QFileInfo(target).absolutePath();
    errno = 0;
    if (!QFileInfo(folder).isDir() && !QDir().mkpath(folder))
        return std::unexpected(errorText(errno == 0 ? ENOTDIR : errno));
    const std::string name = QFile::encodeName(target).toStdString();
    std::string part = name + ".XXXXXX";
    const int error = writeBeside(name, part, content);
    return error == 0 ? std::expected<void, std::string>() : std::unexpected(errorText(error));
}

} // namespace tarnvale
