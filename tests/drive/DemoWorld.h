#pragma once

#include "probes/HealthCheck.h"
#include "support/FakePlatform.h"

#include <map>
#include <string>
#include <vector>

namespace tarnvale {

/// A made-up machine with servers on it, to look at the program without any.
struct DemoWorld {
    FakePlatform platform;
    std::map<std::int64_t, HealthCheck::Result> answers; ///< to health checks, by port

    /// How a port of this world answers; `unknown` when nothing is written down.
    [[nodiscard]] QFuture<HealthCheck::Result> probe(std::int64_t port) const;
};

/// The names of the scenes that `setScene` knows.
[[nodiscard]] std::vector<std::string> demoScenes();

/// Fills `world`, which is new, with a scene; false when there is none of that name.
[[nodiscard]] bool setScene(DemoWorld &world, const std::string &scene);

} // namespace tarnvale
