#include "platform/openEmptied.h"

#include "discovery/text.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

/// Returns 0 or an `errno`.
int makeFolders(const std::string &path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        struct stat status {};
        if (stat(folder.c_str(), &status) != 0 && mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
            return errno;
        if (end == path.npos)
            return 0;
    }
}

} // namespace

std::expected<FileDescriptor, int> openEmptied(const std::string &path) {
    if (const int error = makeFolders(std::string(parentPath(path))); error != 0)
        return std::unexpected(error);
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
                             S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        return std::unexpected(errno);
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::unexpected(EINVAL);
    // The command inherits the flags of the open file.
    if (ftruncate(file.get(), 0) != 0 || fcntl(file.get(), F_SETFL, O_APPEND) != 0)
        return std::unexpected(errno);
    fchmod(file.get(), S_IRUSR | S_IWUSR); // it may be another's, who lets this user write
    return file;
}

} // namespace tarnvale
