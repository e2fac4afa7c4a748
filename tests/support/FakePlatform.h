#pragma once

#include "platform/CommandLauncher.h"
#include "platform/Desktop.h"
#include "platform/LoginItem.h"
#include "platform/Notifications.h"
#include "platform/Platform.h"
#include "platform/ProcessControl.h"
#include "platform/Settings.h"
#include "platform/Tools.h"
#include "support/FakeMachine.h"
#include "support/FakePreviewCapturer.h"
#include "support/ManualClock.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace tarnvale {

/// Settings in memory. A test may put values of any kind there, and make writing fail.
class FakeSettings : public Settings {
public:
    using Value =
        std::variant<bool, std::string, std::vector<std::int64_t>, std::map<std::string, std::string>>;

    std::map<std::string, Value> values;
    bool isFull = false;
    int writes = 0;

    [[nodiscard]] std::optional<std::vector<std::int64_t>> integers(const std::string &key) const override;
    [[nodiscard]] std::optional<std::map<std::string, std::string>>
    texts(const std::string &key) const override;
    [[nodiscard]] std::optional<std::string> bytes(const std::string &key) const override;
    [[nodiscard]] std::optional<bool> flag(const std::string &key) const override;
    [[nodiscard]] bool setIntegers(const std::string &key, const std::vector<std::int64_t> &values) override;
    [[nodiscard]] bool setTexts(const std::string &key,
                                const std::map<std::string, std::string> &values) override;
    [[nodiscard]] bool setBytes(const std::string &key, const std::string &value) override;
    [[nodiscard]] bool setFlag(const std::string &key, bool value) override;
    [[nodiscard]] bool remove(const std::string &key) override;

private:
    template<typename Kind> [[nodiscard]] std::optional<Kind> get(const std::string &key) const;
    bool put(const std::string &key, Value value);
};

class FakeNotifications : public Notifications {
public:
    std::vector<NotificationCategory> categories;
    std::vector<Notification> posted;
    int requests = 0;

    void setCategories(const std::vector<NotificationCategory> &all) override { categories = all; }
    void requestAuthorization() override { ++requests; }
    void post(const Notification &notification) override { posted.push_back(notification); }
};

/// The processes of a `FakeMachine` as things to signal. SIGTERM ends one, unless the test says otherwise.
class FakeProcessControl : public ProcessControl {
public:
    explicit FakeProcessControl(FakeMachine &machine) : m_machine(machine) {}

    struct Signal {
        Pid pid = 0;
        int number = 0;

        bool operator==(const Signal &) const = default;
    };

    std::vector<Signal> sent;
    std::map<Pid, int> refusals; ///< the `errno` that signalling fails with
    std::set<Pid> deaf;          ///< those that SIGTERM doesn't end
    std::vector<Pid> held;

    [[nodiscard]] std::unique_ptr<HeldProcess> hold(Pid pid) override;

private:
    FakeMachine &m_machine;
};

class FakeLaunchedCommand : public LaunchedCommand {
public:
    LaunchOrder order;
    std::function<void()> fail; ///< it exits with a status other than 0
    bool isAlive = true;

    [[nodiscard]] Pid pid() const override { return 1; }
    [[nodiscard]] bool isRunning() const override { return isAlive; }
};

class FakeLauncher : public CommandLauncher {
public:
    std::vector<std::shared_ptr<FakeLaunchedCommand>> launched;
    std::optional<std::string> refusal;
    std::string folder = "/nowhere/logs";

    [[nodiscard]] std::expected<std::shared_ptr<LaunchedCommand>, std::string>
    launch(const LaunchOrder &order, std::function<void()> onFailure) override;
    [[nodiscard]] std::string logsFolder() const override { return folder; }

    /// The commands that were launched, in order.
    [[nodiscard]] std::vector<std::string> commands() const;
};

class FakeRunningTool : public RunningTool {
public:
    std::string path;
    std::vector<std::string> arguments;
    std::function<void(const std::string &)> write;
    std::function<void()> end;
    bool isTerminated = false;

    void terminate() override { isTerminated = true; }
};

/// Tools that answer what the test wrote down. `run` is called on other threads.
class FakeTools : public Tools {
public:
    std::map<std::string, std::string> installed; ///< from name to path
    std::map<std::string, std::string> answers;   ///< from "path argument..." to the output
    std::vector<std::shared_ptr<FakeRunningTool>> started;
    std::optional<std::string> refusal;

    [[nodiscard]] std::optional<std::string> find(const std::string &name) const override;
    [[nodiscard]] std::string run(const ToolRun &run) const override;
    [[nodiscard]] std::expected<std::shared_ptr<RunningTool>, std::string>
    start(const std::string &path, const std::vector<std::string> &arguments,
          std::function<void(const std::string &)> onOutput, std::function<void()> onEnd) override;

    [[nodiscard]] std::vector<ToolRun> runs() const;

private:
    mutable std::mutex m_mutex;
    mutable std::vector<ToolRun> m_runs;
};

class FakeDesktop : public Desktop {
public:
    std::vector<std::string> opened;
    std::vector<std::string> revealed;
    std::vector<std::string> logs;
    std::set<std::string> running; ///< applications that can be focused
    std::vector<std::string> focused;

    void openUrl(const std::string &url) override { opened.push_back(url); }
    void reveal(const std::string &path) override { revealed.push_back(path); }
    void openLog(const std::string &path) override { logs.push_back(path); }
    [[nodiscard]] bool focusApplication(const std::string &hostApp, Pid pid) override;
    [[nodiscard]] std::string applicationName(const std::string &hostApp) const override;
};

class FakeClipboard : public Clipboard {
public:
    std::vector<std::string> texts;

    void setText(const std::string &text) override { texts.push_back(text); }
};

class FakeLoginItem : public LoginItem {
public:
    Status state = Status::other;
    Status afterEnabling = Status::enabled;
    std::optional<std::string> refusal;
    int settingsOpened = 0;

    [[nodiscard]] Status status() const override { return state; }
    [[nodiscard]] std::expected<void, std::string> enable() override;
    [[nodiscard]] std::expected<void, std::string> disable() override;
    void openSystemSettings() override { ++settingsOpened; }
};

/// A system made of plain data. It outlives what is given `platform()`.
class FakePlatform {
public:
    FakePlatform() = default;
    FakePlatform(const FakePlatform &) = delete;
    FakePlatform &operator=(const FakePlatform &) = delete;
    /// Lets the flows that still wait come to their end.
    ~FakePlatform();

    FakeMachine machine;
    ManualClock clock;
    FakeProcessControl processes{machine};
    FakeSettings settings;
    FakeNotifications notifications;
    FakeLauncher launcher;
    FakeTools tools;
    FakeDesktop desktop;
    FakeClipboard clipboard;
    FakeLoginItem loginItem;
    FakePreviewCapturer previewCapturer;

    [[nodiscard]] Platform platform();

    /// Lets time pass for everybody.
    void pass(std::chrono::milliseconds time);
};

} // namespace tarnvale
