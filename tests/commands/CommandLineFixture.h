#pragma once

#include "commands/runCommandLine.h"
#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// Runs commands on a made-up machine and gathers what they print and ask for.
class CommandLineTest : public testing::Test {
protected:
    /// The status of `tarnctl` with `words` behind it. What the run before it left is forgotten first.
    std::optional<std::int32_t> run(const std::vector<std::string> &words) {
        m_output.clear();
        m_error.clear();
        m_opened.clear();
        m_naps.clear();
        std::vector<std::string> arguments{"/usr/local/bin/tarnctl"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        return runCommandLine(arguments, world());
    }

    [[nodiscard]] CommandLineWorld world() {
        return {.writeOutput =
                    [this](std::string_view text) {
                        m_output += text;
                        return !m_isOutputFull;
                    },
                .writeError = [this](std::string_view text) { m_error += text; },
                .machine = [this]() -> Machine & {
                    ++m_machinesMade;
                    return m_machine;
                },
                .sleep =
                    [this](std::chrono::milliseconds time) {
                        m_naps.push_back(time);
                        if (m_whileSleeping)
                            m_whileSleeping();
                    },
                .openURL = [this](const std::string &url) { m_opened.push_back(url); },
                .uid = 501};
    }

    FakeMachine m_machine;
    std::string m_output;
    std::string m_error;
    std::vector<std::string> m_opened;
    std::vector<std::chrono::milliseconds> m_naps;
    std::function<void()> m_whileSleeping;
    bool m_isOutputFull = false;
    int m_machinesMade = 0;
};

inline const std::string usageText =
    "usage: tarnctl ports [--all]   list listening dev ports (--all includes system processes)\n"
    "       tarnctl kill <port>     stop whatever is listening on <port>\n"
    "       tarnctl open <port>     open http://localhost:<port> in the browser";

} // namespace tarnvale
