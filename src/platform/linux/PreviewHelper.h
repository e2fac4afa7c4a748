#pragma once

#include "discovery/FileDescriptor.h"
#include "platform/PreviewProtocol.h"
#include "platform/descriptorNotifier.h"
#include "platform/linux/SpawnedProcess.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tarnvale {

/// One run of the helper program that draws pages. It has nothing of ours but its end of a conversation, and
/// is killed, with all that it started, when this object goes. Main thread.
class PreviewHelper {
public:
    /// Called from the event loop. Each may delete the object.
    struct Listener {
        std::function<void(const QByteArray &)> onReply; ///< the first one tells that it is ready
        std::function<void()> onEnd;                     ///< it has ended, or doesn't keep to the protocol
    };

    /// Nothing when it can't be started.
    [[nodiscard]] static std::unique_ptr<PreviewHelper> start(const std::string &path, Listener listener);
    PreviewHelper(const PreviewHelper &) = delete;
    PreviewHelper &operator=(const PreviewHelper &) = delete;
    ~PreviewHelper();

    /// Asks for the page of a port. A helper that doesn't take the request is about to end.
    void ask(std::int64_t port);

    [[nodiscard]] Pid pid() const { return m_process->pid(); }

private:
    PreviewHelper(FileDescriptor socket, Listener listener);
    void read();
    void end();

    Listener m_listener;
    PreviewReplies m_replies;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
    std::unique_ptr<SpawnedProcess> m_process;
    FileDescriptor m_socket;
    DescriptorNotifier m_notifier; ///< before its descriptor goes
};

} // namespace tarnvale
