#include "real/RealApplication.h"

#include "support/ManualClock.h"

#include <algorithm>
#include <sys/wait.h>

namespace tarnvale {

namespace {

std::vector<std::string> joined(std::vector<std::string> texts, const std::vector<std::string> &more) {
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

/// The variables of `desktop`, unless `variables` sets them otherwise.
std::vector<std::string> environmentOf(const RealDesktop &desktop, std::vector<std::string> variables) {
    for (const std::string &entry : desktop.environment()) {
        const std::string name = entry.substr(0, entry.find('=') + 1);
        if (std::none_of(variables.begin(), variables.end(),
                         [&](const std::string &other) { return other.starts_with(name); }))
            variables.push_back(entry);
    }
    return environmentWith(variables);
}

} // namespace

RealApplication::RealApplication(const RealDesktop &desktop, const std::vector<std::string> &words,
                                 const std::vector<std::string> &variables)
    : m_process(std::make_unique<TestProcess>(
          joined({"/bin/sh", "-c", "unset SESSION_MANAGER; exec \"$@\" 2>\"$0\"", m_folder.path("output"),
                  TARNVALE_EXECUTABLE},
                 words),
          environmentOf(desktop, variables))) {}

RealApplication::~RealApplication() {
    if (isRunning())
        end();
}

std::string RealApplication::output() const {
    return readFile(m_folder.path("output"));
}

bool RealApplication::says(const std::string &words) const {
    return waitFor([&] { return output().find(words) != std::string::npos || !isRunning(); },
                   std::chrono::seconds(20)) &&
           output().find(words) != std::string::npos;
}

std::optional<int> RealApplication::waitForEnd() {
    const auto status = m_process->waitForEnd();
    if (!status)
        return std::nullopt;
    return WIFEXITED(*status) ? WEXITSTATUS(*status) : -WTERMSIG(*status);
}

std::optional<int> RealApplication::end(int signal) {
    kill(pid(), signal);
    return waitForEnd();
}

} // namespace tarnvale
