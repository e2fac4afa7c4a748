#include "platform/linux/PreviewHelper.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>

namespace tarnvale {

std::unique_ptr<PreviewHelper> PreviewHelper::start(const std::string &path, Listener listener) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return nullptr;
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    std::unique_ptr<PreviewHelper> helper(new PreviewHelper(std::move(ours), std::move(listener)));
    // In a session of its own, it and what it starts are one group.
    auto process =
        SpawnedProcess::start({.path = path,
                               .descriptors = {{STDIN_FILENO, theirs.get()}, {STDOUT_FILENO, theirs.get()}},
                               .newSession = true},
                              [started = helper.get()](int) { started->end(); });
    if (!process)
        return nullptr;
    helper->m_process = std::move(*process);
    return helper;
}

PreviewHelper::PreviewHelper(FileDescriptor socket, Listener listener)
    : m_listener(std::move(listener)),
      m_socket(std::move(socket)),
      m_notifier(whenReadable(m_socket.get(), [this] { read(); })) {}

PreviewHelper::~PreviewHelper() {
    *m_isAlive = false;
    // Only this object reaps it, so its number can't have passed to another group while it runs.
    if (m_process && m_process->isRunning())
        kill(-m_process->pid(), SIGKILL);
}

void PreviewHelper::ask(std::int64_t port) {
    const std::string request = previewRequest(port);
    // What fails here fails because the helper has ended, of which its end tells.
    send(m_socket.get(), request.data(), request.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

/// Reads one piece, so that a flood leaves the event loop its turn.
void PreviewHelper::read() {
    std::array<char, std::size_t{64} << 10> piece; // NOLINT(*-member-init): recv(2) fills it
    const ssize_t count = recv(m_socket.get(), piece.data(), piece.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0) {
        end();
        return;
    }
    m_replies.add({piece.data(), static_cast<std::size_t>(count)});
    const std::shared_ptr<bool> isAlive = m_isAlive;
    while (const auto reply = *isAlive ? m_replies.next() : std::nullopt) {
        const auto onReply = m_listener.onReply;
        onReply(*reply);
    }
    if (*isAlive && m_replies.isBroken())
        end();
}

void PreviewHelper::end() {
    m_notifier.reset();
    const auto onEnd = std::exchange(m_listener.onEnd, {});
    if (onEnd)
        onEnd(); // may delete this
}

} // namespace tarnvale
