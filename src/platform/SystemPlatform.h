#pragma once

#include "platform/Platform.h"

#include <memory>

namespace tarnvale {

/// The platform of the system that the program runs on. Main thread.
class SystemPlatform {
public:
    /// `clipboard` belongs to the windows' side of the house, and outlives this object.
    explicit SystemPlatform(Clipboard &clipboard);
    SystemPlatform(const SystemPlatform &) = delete;
    SystemPlatform &operator=(const SystemPlatform &) = delete;
    ~SystemPlatform();

    /// Valid as long as this object lives.
    [[nodiscard]] Platform platform();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace tarnvale
