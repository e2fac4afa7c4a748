#pragma once

#include <string>
#include <vector>

namespace tarnvale {

/// Control groups of one name in those hierarchies of this machine that systemd uses, made by the test. They
/// go with this object, groups below them included; by then they must be without processes.
class ControlGroups {
public:
    /// Makes them; without a unified hierarchy, or without the right to, there are none.
    explicit ControlGroups(std::string name);
    ControlGroups(const ControlGroups &) = delete;
    ControlGroups &operator=(const ControlGroups &) = delete;
    ~ControlGroups();

    /// The folders of the groups; empty when there are none.
    [[nodiscard]] const std::vector<std::string> &folders() const { return m_folders; }

private:
    std::vector<std::string> m_folders;
};

/// Removes what is left, without processes, of the control groups `name` in all hierarchies.
void removeControlGroups(const std::string &name);

} // namespace tarnvale
