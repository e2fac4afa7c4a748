#pragma once

#include "platform/Utf8Stream.h"
#include "platform/linux/SpawnedProcess.h"

#include <QObject>

namespace tarnvale {

/// Reads what a tool writes until it has ended, for whoever listens. The object deletes itself then, with the
/// application at the latest: whoever stops to listen doesn't break the tool's pipe.
class ToolReader : public QObject {
public:
    struct Listener {
        std::function<void(const std::string &)> onOutput;
        std::function<void()> onEnd;
    };

    /// Starts the tool. The error is an `errno`.
    [[nodiscard]] static std::expected<ToolReader *, int>
    start(const std::string &path, const std::vector<std::string> &arguments, Listener listener);

    /// What the tool still writes is read and dropped, and the end isn't told.
    void stopListening() { m_listener = {}; }

    /// A way to this object for as long as it lives.
    [[nodiscard]] std::weak_ptr<ToolReader *> handle() const { return m_self; }

    void terminate() { m_process->terminate(); }

private:
    ToolReader(FileDescriptor output, Listener listener);
    bool readOnce();
    void processEnded();
    void closeOutput();
    void tell(const std::string &text) const;

    Listener m_listener;
    Utf8Stream m_text;
    std::unique_ptr<SpawnedProcess> m_process;
    FileDescriptor m_output;
    std::shared_ptr<ToolReader *> m_self = std::make_shared<ToolReader *>(this);
    DescriptorNotifier m_notifier; ///< before its descriptor goes
};

} // namespace tarnvale
