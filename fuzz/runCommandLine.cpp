#include "commands/runCommandLine.h"

#include "discovery/Machine.h"
#include "discovery/text.h"
#include "fuzz/check.h"

#include <algorithm>
#include <cstdlib>

using namespace tarnvale;

namespace {

/// A machine on which nothing listens and nothing runs.
class EmptyMachine : public Machine {
public:
    std::vector<ListeningPort> listeningSockets() override {
        ++scans;
        return {};
    }
    ProcessDetailsMap processDetails(const std::vector<Pid> &) override { return {}; }
    ProcessDetailsMap currentDetails(const std::vector<Pid> &) override { return {}; }
    WorkingDirectories workingDirectories(const std::vector<Pid> &) override { return {}; }
    ServiceLabels serviceLabels(const std::vector<Pid> &) override { return {}; }
    ContainerMap containers(const std::vector<ListeningPort> &) override { return {}; }
    ProcessTable processTable(const std::vector<Pid> &) override { return {}; }
    std::optional<std::string> hostApplication(Pid, const ProcessNode &) override { return std::nullopt; }
    std::string ownApplication() override { return {}; }

    int scans = 0;
};

/// What one run wrote and did.
struct Run {
    std::string output;
    std::string error;
    std::vector<std::string> opened;
    EmptyMachine machine;
};

CommandLineWorld worldOf(Run &run) {
    CommandLineWorld world;
    world.writeOutput = [&run](std::string_view text) {
        run.output += text;
        return true;
    };
    world.writeError = [&run](std::string_view text) { run.error += text; };
    world.machine = [&run]() -> Machine & { return run.machine; };
    world.sleep = [](std::chrono::milliseconds) { check(false, "an empty machine is never waited for"); };
    world.openURL = [&run](const std::string &url) { run.opened.push_back(url); };
    world.uid = 1000;
    return world;
}

bool hasNumber(const std::vector<std::string> &words) {
    return words.size() == 3 && parseInteger<std::int64_t>(words[2]).has_value();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::vector<std::string> words{"tarnctl"};
    for (const std::string_view text : asTexts(data, size))
        words.emplace_back(text);
    Run run;
    const auto status = runCommandLine(words, worldOf(run));

    const std::string &command = words[1];
    const bool isScan = command == "ports" || (command == "kill" && hasNumber(words));
    check(run.machine.scans == (isScan ? 1 : 0), "only complete commands scan the machine");
    check(run.opened.size() == (command == "open" && hasNumber(words) ? 1u : 0u), "only open opens");
    check(!status || *status == 0 || *status == 1, "a status is 0 or 1");
    const bool isKnown = command == "ports" || command == "kill" || command == "open" || command == "help" ||
                         command == "--help" || command == "-h";
    check(status.has_value() == isKnown, "other words start the application");
    check(status || (run.output.empty() && run.error.empty()), "which says nothing here");
    check(status != 1 || !run.error.empty(), "a failure says why");
    for (const std::string &text : {run.output, run.error})
        forEachCodePoint(isUtf8(text) ? text : "\x1b", [](std::uint32_t point) {
            check(point == '\n' || (point >= 0x20 && point != 0x7F), "what is written is fit for a terminal");
        });
    return 0;
}
