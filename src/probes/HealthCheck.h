#pragma once

#include "probes/Health.h"

#include <QFuture>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// Asks a local port one question: does something answer HTTP there, and how fast?
namespace tarnvale::HealthCheck {

struct Result {
    Health health;
    /// From before the connection was begun until the first reply bytes were read; only for `responding` and
    /// `serverError`.
    std::optional<std::int64_t> milliseconds;

    bool operator==(const Result &) const = default;
};

/// Connects to localhost, asks for `path` with HTTP/1.0, looks at the first at most 64 bytes that come back
/// and closes. A path that isn't valid (`isValidHealthPath`) stands for "/"; a port out of range for the
/// nearest in range. `timeout` counts from now and bounds all of it.
///
/// Returns at once. The future always comes to have a result, whatever the server does: it finishes on the
/// main thread, at the latest when the application object goes away. Main thread.
[[nodiscard]] QFuture<Result> check(std::int64_t port, const std::string &path,
                                    std::chrono::milliseconds timeout);

} // namespace tarnvale::HealthCheck
