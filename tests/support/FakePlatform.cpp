#include "support/FakePlatform.h"

#include "discovery/text.h"
#include "platform/background.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>

namespace tarnvale {

template<typename Kind> std::optional<Kind> FakeSettings::get(const std::string &key) const {
    const auto found = values.find(key);
    const Kind *value = found == values.end() ? nullptr : std::get_if<Kind>(&found->second);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

bool FakeSettings::put(const std::string &key, Value value) {
    ++writes;
    if (!isFull)
        values.insert_or_assign(key, std::move(value));
    return !isFull;
}

std::optional<std::vector<std::int64_t>> FakeSettings::integers(const std::string &key) const {
    return get<std::vector<std::int64_t>>(key);
}

std::optional<std::map<std::string, std::string>> FakeSettings::texts(const std::string &key) const {
    return get<std::map<std::string, std::string>>(key);
}

std::optional<std::string> FakeSettings::bytes(const std::string &key) const {
    return get<std::string>(key);
}

std::optional<bool> FakeSettings::flag(const std::string &key) const {
    return get<bool>(key);
}

bool FakeSettings::setIntegers(const std::string &key, const std::vector<std::int64_t> &value) {
    return put(key, value);
}

bool FakeSettings::setTexts(const std::string &key, const std::map<std::string, std::string> &value) {
    return put(key, value);
}

bool FakeSettings::setBytes(const std::string &key, const std::string &value) {
    return put(key, value);
}

bool FakeSettings::setFlag(const std::string &key, bool value) {
    return put(key, value);
}

bool FakeSettings::remove(const std::string &key) {
    ++writes;
    if (!isFull)
        values.erase(key);
    return !isFull;
}

namespace {

class FakeHeldProcess : public HeldProcess {
public:
    FakeHeldProcess(Pid pid, FakeProcessControl &control, FakeMachine &machine)
        : m_pid(pid), m_control(control), m_machine(machine), m_start(machine.startOf(pid)) {}

    [[nodiscard]] int signal(int number) override {
        if (hasEnded())
            return ESRCH;
        if (const auto refusal = m_control.refusals.find(m_pid); refusal != m_control.refusals.end())
            return refusal->second;
        m_control.sent.push_back({m_pid, number});
        if (number == SIGTERM && !m_control.deaf.contains(m_pid))
            m_machine.end(m_pid);
        return 0;
    }

    [[nodiscard]] bool hasEnded() const override { return !m_start || m_machine.startOf(m_pid) != m_start; }

private:
    Pid m_pid;
    FakeProcessControl &m_control;
    FakeMachine &m_machine;
    std::optional<Instant> m_start; ///< tells it from a later process of the same number
};

} // namespace

std::unique_ptr<HeldProcess> FakeProcessControl::hold(Pid pid) {
    held.push_back(pid);
    return std::make_unique<FakeHeldProcess>(pid, *this, m_machine);
}

std::expected<std::shared_ptr<LaunchedCommand>, std::string>
FakeLauncher::launch(const LaunchOrder &order, std::function<void()> onFailure) {
    if (refusal)
        return std::unexpected(*refusal);
    auto command = std::make_shared<FakeLaunchedCommand>();
    command->order = order;
    command->fail = std::move(onFailure);
    launched.push_back(command);
    return command;
}

std::vector<std::string> FakeLauncher::commands() const {
    std::vector<std::string> result;
    for (const auto &command : launched)
        result.push_back(command->order.command);
    return result;
}

std::optional<std::string> FakeTools::find(const std::string &name) const {
    const auto found = installed.find(name);
    return found == installed.end() ? std::nullopt : std::optional(found->second);
}

std::string FakeTools::run(const ToolRun &run) const {
    std::string words = run.path;
    for (const std::string &argument : run.arguments)
        words += " " + argument;
    const std::lock_guard lock(m_mutex);
    m_runs.push_back(run);
    const auto found = answers.find(words);
    return found == answers.end() ? std::string() : found->second;
}

std::vector<ToolRun> FakeTools::runs() const {
    const std::lock_guard lock(m_mutex);
    return m_runs;
}

std::expected<std::shared_ptr<RunningTool>, std::string>
FakeTools::start(const std::string &path, const std::vector<std::string> &arguments,
                 std::function<void(const std::string &)> onOutput, std::function<void()> onEnd) {
    if (refusal)
        return std::unexpected(*refusal);
    auto tool = std::make_shared<FakeRunningTool>();
    tool->path = path;
    tool->arguments = arguments;
    tool->write = std::move(onOutput);
    tool->end = std::move(onEnd);
    started.push_back(tool);
    return tool;
}

bool FakeDesktop::focusApplication(const std::string &hostApp, Pid) {
    if (!running.contains(hostApp))
        return false;
    focused.push_back(hostApp);
    return true;
}

std::string FakeDesktop::applicationName(const std::string &hostApp) const {
    return std::filesystem::path(hostApp).stem().string();
}

std::expected<void, std::string> FakeLoginItem::enable() {
    if (refusal)
        return std::unexpected(*refusal);
    state = afterEnabling;
    return {};
}

std::expected<void, std::string> FakeLoginItem::disable() {
    if (refusal)
        return std::unexpected(*refusal);
    state = Status::other;
    return {};
}

FakePlatform::~FakePlatform() {
    backgroundThreads().waitForDone();
    previewCapturer.answerAll();
    clock.wakeAll();
}

Platform FakePlatform::platform() {
    return {.clock = clock,
            .machine = machine,
            .processes = processes,
            .settings = settings,
            .notifications = notifications,
            .launcher = launcher,
            .tools = tools,
            .desktop = desktop,
            .clipboard = clipboard,
            .loginItem = loginItem,
            .previewCapturer = previewCapturer};
}

void FakePlatform::pass(std::chrono::milliseconds time) {
    machine.tick(time);
    clock.advance(time);
}

} // namespace tarnvale
