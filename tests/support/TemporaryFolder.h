#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A folder of a test's own, gone with all that is in it when the test ends.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder();

    /// The absolute path of `name` in the folder; of the folder itself without a name.
    [[nodiscard]] std::string path(std::string_view name = {}) const;

    /// Writes a file, the folders above it included, and returns its path.
    std::string write(std::string_view name, std::string_view content) const;

    /// The same for an executable shell script made of the lines in `body`.
    std::string writeScript(std::string_view name, std::string_view body) const;

private:
    std::string m_path;
};

/// The whole content of a file; empty when it can't be read.
[[nodiscard]] std::string readFile(const std::string &path);

/// The content of a file in the folder `recordings` beside a folder of tests, such as "discovery".
[[nodiscard]] std::string readRecording(const std::string &testsFolder, std::string_view room,
                                        std::string_view name);

} // namespace tarnvale
