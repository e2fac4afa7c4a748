#include "platform/linux/SystemTools.h"

#include "discovery/docker.h"
#include "discovery/findTool.h"
#include "discovery/runTool.h"
#include "platform/errorText.h"
#include "platform/linux/ToolReader.h"

namespace tarnvale {

namespace {

class ReadTool : public RunningTool {
public:
    explicit ReadTool(const ToolReader &reader) : m_reader(reader.handle()) {}
    ReadTool(const ReadTool &) = delete;
    ReadTool &operator=(const ReadTool &) = delete;
    ~ReadTool() override {
        if (const auto reader = m_reader.lock())
            (*reader)->stopListening();
    }

    void terminate() override {
        if (const auto reader = m_reader.lock())
            (*reader)->terminate();
    }

private:
    std::weak_ptr<ToolReader *> m_reader; ///< gone when the tool has ended
};

std::vector<std::string> standardFolders() {
    std::vector<std::string> folders{"/opt/homebrew/bin", "/usr/local/bin"};
    for (std::string &folder : systemToolFolders(homeFolder()))
        folders.push_back(std::move(folder));
    return folders;
}

} // namespace

std::optional<std::string> SystemTools::find(const std::string &name) const {
    if (!m_folders && name == "docker")
        return dockerPath(); // searched in an order of its own, and the scan must find the same
    std::vector<std::string> candidates;
    for (const std::string &folder : m_folders ? *m_folders : standardFolders())
        candidates.push_back(std::string(folder).append("/").append(name));
    return firstExecutable(candidates);
}

std::string SystemTools::run(const ToolRun &run) const {
    return runTool(run.path, run.arguments, run.mergesError, run.timeout);
}

std::expected<std::shared_ptr<RunningTool>, std::string>
SystemTools::start(const std::string &path, const std::vector<std::string> &arguments,
                   std::function<void(const std::string &)> onOutput, std::function<void()> onEnd) {
    const auto reader = ToolReader::start(path, arguments, {std::move(onOutput), std::move(onEnd)});
    if (!reader)
        return std::unexpected(errorText(reader.error()));
    return std::make_shared<ReadTool>(**reader);
}

} // namespace tarnvale
