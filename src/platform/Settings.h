#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// The small values that outlive the program, each under a key. A value of another kind than the one that is
/// asked for counts as absent, and stays until it is written anew. Main thread.
///
/// Writing is immediate and whole. It tells whether the value has reached the disk; when it hasn't, what was
/// stored before is still there.
class Settings {
public:
    Settings() = default;
    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;
    virtual ~Settings() = default;

    /// Nothing also when one element is no integer.
    [[nodiscard]] virtual std::optional<std::vector<std::int64_t>> integers(const std::string &key) const = 0;
    /// Nothing also when one value is no text.
    [[nodiscard]] virtual std::optional<std::map<std::string, std::string>>
    texts(const std::string &key) const = 0;
    [[nodiscard]] virtual std::optional<std::string> bytes(const std::string &key) const = 0;
    [[nodiscard]] virtual std::optional<bool> flag(const std::string &key) const = 0;

    [[nodiscard]] virtual bool setIntegers(const std::string &key,
                                           const std::vector<std::int64_t> &values) = 0;
    [[nodiscard]] virtual bool setTexts(const std::string &key,
                                        const std::map<std::string, std::string> &values) = 0;
    [[nodiscard]] virtual bool setBytes(const std::string &key, const std::string &value) = 0;
    [[nodiscard]] virtual bool setFlag(const std::string &key, bool value) = 0;
    [[nodiscard]] virtual bool remove(const std::string &key) = 0;
};

} // namespace tarnvale
