#pragma once

#include "discovery/ListeningPort.h"

#include <memory>

namespace tarnvale {

/// One particular process, from when it was held until it ends; see `ProcessHandle`. Main thread.
class HeldProcess {
public:
    HeldProcess() = default;
    HeldProcess(const HeldProcess &) = delete;
    HeldProcess &operator=(const HeldProcess &) = delete;
    virtual ~HeldProcess() = default;

    /// Sends `number`; 0 or the `errno` of the failure.
    [[nodiscard]] virtual int signal(int number) = 0;

    /// The whole process has ended. Doesn't wait.
    [[nodiscard]] virtual bool hasEnded() const = 0;
};

/// Gives handles on processes.
class ProcessControl {
public:
    ProcessControl() = default;
    ProcessControl(const ProcessControl &) = delete;
    ProcessControl &operator=(const ProcessControl &) = delete;
    virtual ~ProcessControl() = default;

    /// Whatever process `pid` is now. Never null; one that can't be held tells why when it is signalled.
    [[nodiscard]] virtual std::unique_ptr<HeldProcess> hold(Pid pid) = 0;
};

/// The real ones.
class SystemProcessControl : public ProcessControl {
public:
    [[nodiscard]] std::unique_ptr<HeldProcess> hold(Pid pid) override;
};

} // namespace tarnvale
