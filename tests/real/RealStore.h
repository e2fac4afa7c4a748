#pragma once

#include "discovery/linux/LinuxMachine.h"
#include "platform/linux/ShellLauncher.h"
#include "platform/linux/SystemTools.h"
#include "store/PortStore.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

#include <QCoroTask>
#include <QDBusConnection>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarnvale {

/// Tools of this machine that nobody waits long for.
class ImpatientTools : public SystemTools {
public:
    using SystemTools::SystemTools;

    std::chrono::milliseconds longestRun = std::chrono::minutes(1);

    [[nodiscard]] std::string run(const ToolRun &run) const override;
};

/// A store on the real machine, with real processes, tools and launches. Only what would reach the user's
/// desktop and settings is a fake.
class RealStore {
public:
    /// Launches with the shell at `shell`.
    explicit RealStore(const std::string &shell = "/bin/bash");
    RealStore(const RealStore &) = delete;
    RealStore &operator=(const RealStore &) = delete;
    ~RealStore();

    /// The record of a port, after a scan that is made for it; nothing when it isn't listed.
    [[nodiscard]] std::optional<ListeningPort> record(std::int64_t port);

    /// Waits for the end of a flow; whether it came.
    bool finish(QCoro::Task<> flow, std::chrono::milliseconds timeout = std::chrono::seconds(30));

    [[nodiscard]] std::string error() const;

    [[nodiscard]] Platform platform();

    TemporaryFolder folder;
    LinuxMachine machine;
    SystemProcessControl processes;
    ImpatientTools tools;
    ShellLauncher launcher;
    SystemClock ownClock;
    Clock *clock = &ownClock;
    FakeSettings settings;
    FakeNotifications notifications;
    Notifications *shownBy = &notifications;
    FakeDesktop desktop;
    FakeClipboard clipboard;
    FakeLoginItem loginItem;
    FakePreviewCapturer previewCapturer;

    /// Created at the first use.
    PortStore &store();

private:
    std::unique_ptr<PortStore> m_store;
};

} // namespace tarnvale
