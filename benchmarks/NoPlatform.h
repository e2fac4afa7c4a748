#pragma once

#include "platform/Clock.h"
#include "platform/CommandLauncher.h"
#include "platform/Desktop.h"
#include "platform/LoginItem.h"
#include "platform/Notifications.h"
#include "platform/Platform.h"
#include "platform/PreviewCapturer.h"
#include "platform/ProcessControl.h"
#include "platform/Settings.h"
#include "platform/Tools.h"

#include <QPromise>

#include <list>

namespace tarnvale {

/// A platform on which nothing but the given machine is there.
class NoPlatform {
public:
    /// A clock that stands still wakes nobody, so that only the benchmark's own scans are made.
    enum class Time : std::uint8_t { passes, standsStill };

    NoPlatform(Machine &machine, Time time) : m_machine(machine), m_isStill(time == Time::standsStill) {}

    [[nodiscard]] Platform platform() {
        return {.clock = m_isStill ? static_cast<Clock &>(m_stillClock) : m_clock,
                .machine = m_machine,
                .processes = m_processes,
                .settings = m_settings,
                .notifications = m_notifications,
                .launcher = m_launcher,
                .tools = m_tools,
                .desktop = m_desktop,
                .clipboard = m_clipboard,
                .loginItem = m_loginItem,
                .previewCapturer = m_previewCapturer};
    }

private:
    struct StillClock : SystemClock {
        QFuture<void> sleep(std::chrono::milliseconds) override {
            promises.emplace_back().start();
            return promises.back().future();
        }
        std::list<QPromise<void>> promises;
    };
    struct NoSettings : Settings {
        using Texts = std::map<std::string, std::string>;
        std::optional<std::vector<std::int64_t>> integers(const std::string &) const override { return {}; }
        std::optional<Texts> texts(const std::string &) const override { return {}; }
        std::optional<std::string> bytes(const std::string &) const override { return {}; }
        std::optional<bool> flag(const std::string &) const override { return {}; }
        bool setIntegers(const std::string &, const std::vector<std::int64_t> &) override { return true; }
        bool setTexts(const std::string &, const Texts &) override { return true; }
        bool setBytes(const std::string &, const std::string &) override { return true; }
        bool setFlag(const std::string &, bool) override { return true; }
        bool remove(const std::string &) override { return true; }
    };
    struct NoNotifications : Notifications {
        void setCategories(const std::vector<NotificationCategory> &) override {}
        void requestAuthorization() override {}
        void post(const Notification &) override {}
    };
    struct NoLauncher : CommandLauncher {
        std::expected<std::shared_ptr<LaunchedCommand>, std::string> launch(const LaunchOrder &,
                                                                            std::function<void()>) override {
            return std::unexpected("there is none");
        }
        std::string logsFolder() const override { return "/nowhere"; }
    };
    struct NoTools : Tools {
        std::optional<std::string> find(const std::string &) const override { return {}; }
        std::string run(const ToolRun &) const override { return {}; }
        std::expected<std::shared_ptr<RunningTool>, std::string>
        start(const std::string &, const std::vector<std::string> &, std::function<void(const std::string &)>,
              std::function<void()>) override {
            return std::unexpected("there is none");
        }
    };
    struct NoDesktop : Desktop {
        void openUrl(const std::string &) override {}
        void reveal(const std::string &) override {}
        void openLog(const std::string &) override {}
        bool focusApplication(const std::string &, Pid) override { return false; }
        std::string applicationName(const std::string &) const override { return {}; }
    };
    struct NoClipboard : Clipboard {
        void setText(const std::string &) override {}
    };
    struct NoLoginItem : LoginItem {
        Status status() const override { return Status::other; }
        std::expected<void, std::string> enable() override { return {}; }
        std::expected<void, std::string> disable() override { return {}; }
        void openSystemSettings() override {}
    };
    struct NoPreviewCapturer : PreviewCapturer {
        QFuture<std::optional<QByteArray>> capture(std::int64_t) override {
            QPromise<std::optional<QByteArray>> promise;
            promise.start();
            promise.addResult(std::nullopt);
            promise.finish();
            return promise.future();
        }
    };

    Machine &m_machine;
    bool m_isStill;
    SystemClock m_clock;
    StillClock m_stillClock;
    SystemProcessControl m_processes;
    NoSettings m_settings;
    NoNotifications m_notifications;
    NoLauncher m_launcher;
    NoTools m_tools;
    NoDesktop m_desktop;
    NoClipboard m_clipboard;
    NoLoginItem m_loginItem;
    NoPreviewCapturer m_previewCapturer;
};

} // namespace tarnvale
