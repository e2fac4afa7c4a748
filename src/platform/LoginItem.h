#pragma once

#include <cstdint>
#include <expected>
#include <string>

namespace tarnvale {

/// Whether the program starts when the user logs in. Main thread.
class LoginItem {
public:
    enum class Status : std::uint8_t { enabled, requiresApproval, other };

    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual Status status() const = 0;

    /// Both tell why they failed, in words for the user.
    [[nodiscard]] virtual std::expected<void, std::string> enable() = 0;
    [[nodiscard]] virtual std::expected<void, std::string> disable() = 0;

    /// Shows the system's own page for such programs, where it has one.
    virtual void openSystemSettings() = 0;
};

} // namespace tarnvale
