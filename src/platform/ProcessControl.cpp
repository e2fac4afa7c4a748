#include "platform/ProcessControl.h"

#include "platform/process/ProcessHandle.h"

namespace tarnvale {

namespace {

class SystemProcess : public HeldProcess {
public:
    explicit SystemProcess(Pid pid) : m_handle(pid) {}

    [[nodiscard]] int signal(int number) override { return m_handle.signal(number); }
    [[nodiscard]] bool hasEnded() const override { return m_handle.waitForEnd(std::chrono::milliseconds(0)); }

private:
    ProcessHandle m_handle;
};

} // namespace

std::unique_ptr<HeldProcess> SystemProcessControl::hold(Pid pid) {
    return std::make_unique<SystemProcess>(pid);
}

} // namespace tarnvale
