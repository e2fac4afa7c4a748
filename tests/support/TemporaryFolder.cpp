#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tarnvale {

TemporaryFolder::TemporaryFolder() : m_path(std::filesystem::temp_directory_path() / "tarnvale-test-XXXXXX") {
    if (mkdtemp(m_path.data()) == nullptr)
        throw std::runtime_error("no temporary folder can be made");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::path(std::string_view name) const {
    return name.empty() ? m_path : m_path + "/" + std::string(name);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const std::filesystem::path file = path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
}

std::string TemporaryFolder::writeScript(std::string_view name, std::string_view body) const {
    const std::string file = write(name, "#!/bin/sh\n" + std::string(body) + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string readRecording(const std::string &testsFolder, std::string_view room, std::string_view name) {
    const std::string path = testsFolder + "/" + std::string(room) + "/recordings/" + std::string(name);
    if (!std::filesystem::is_regular_file(path))
        throw std::runtime_error("no recording " + path);
    return readFile(path);
}

} // namespace tarnvale
