#include "discovery/linux/listeners.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

socklen_t fillAddress(const std::string &text, std::uint16_t port, sockaddr_storage &storage) {
    auto *six = reinterpret_cast<sockaddr_in6 *>(&storage);
    auto *four = reinterpret_cast<sockaddr_in *>(&storage);
    if (inet_pton(AF_INET6, text.c_str(), &six->sin6_addr) == 1) {
        six->sin6_family = AF_INET6;
        six->sin6_port = htons(port);
        return sizeof *six;
    }
    four->sin_family = AF_INET;
    four->sin_port = htons(port);
    return inet_pton(AF_INET, text.c_str(), &four->sin_addr) == 1 ? sizeof *four : 0;
}

void set(int socket, int level, int option, int value) {
    setsockopt(socket, level, option, &value, sizeof value);
}

} // namespace

OpenListener openListener(const std::string &address, const ListenerSetup &setup) {
    sockaddr_storage storage{};
    socklen_t length = fillAddress(address, setup.port, storage);
    OpenListener listener;
    listener.socket = FileDescriptor(socket(storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC, setup.protocol));
    const int fd = listener.socket.get();
    if (storage.ss_family == AF_INET6)
        set(fd, IPPROTO_IPV6, IPV6_V6ONLY, setup.isDualStack ? 0 : 1);
    if (setup.sharesPort)
        set(fd, SOL_SOCKET, SO_REUSEPORT, 1);
    auto *bound = reinterpret_cast<sockaddr *>(&storage);
    struct stat status {};
    if (length == 0 || bind(fd, bound, length) != 0 || listen(fd, 8) != 0 ||
        getsockname(fd, bound, &length) != 0 || fstat(fd, &status) != 0) {
        const int error = errno;
        listener.socket.reset();
        errno = error;
        return listener;
    }
    // The port lies at the same place in both forms of address.
    listener.port = ntohs(reinterpret_cast<const sockaddr_in *>(&storage)->sin_port);
    listener.inode = status.st_ino;
    return listener;
}

} // namespace tarnvale
