#include "discovery/runTool.h"

#include "discovery/ChildProcess.h"
#include "discovery/FileDescriptor.h"
#include "discovery/text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tarnvale {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t outputLimit = 256u << 20;
constexpr milliseconds terminationGrace{500};

/// Appends what the pipe gives until it ends or `deadline` passes; false when the deadline came first.
bool readUntil(int pipe, Clock::time_point deadline, std::string &output) {
    std::string chunk(64u << 10, '\0');
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero())
            return false;
        pollfd readable{.fd = pipe, .events = POLLIN, .revents = 0};
        const int ready = poll(&readable, 1, static_cast<int>(std::min<std::int64_t>(left.count(), 60'000)));
        if (ready < 0 && errno != EINTR)
            return true;
        if (ready <= 0)
            continue;
        const ssize_t count = read(pipe, chunk.data(), chunk.size());
        if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
            return true;
        if (count > 0)
            output.append(chunk, 0, std::min(static_cast<std::size_t>(count), outputLimit - output.size()));
    }
}

} // namespace

std::string runTool(const std::string &path, const std::vector<std::string> &arguments,
                    bool mergeStandardError, milliseconds timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    ChildProcess tool = ChildProcess::start(
        path, arguments, {.output = writeEnd.get(), .mergesError = mergeStandardError, .newSession = false});
    writeEnd.reset();
    if (!tool.isStarted())
        return {};

    std::string output;
    const bool isComplete = readUntil(readEnd.get(), deadline, output);
    if (!tool.waitUntil(deadline)) {
        tool.terminate();
        const Clock::time_point lastCall = Clock::now() + terminationGrace;
        if (!isComplete)
            readUntil(readEnd.get(), lastCall, output);
        tool.waitUntil(lastCall);
    }
    return repairedUtf8(output);
}

bool runOpener(const std::string &path, const std::vector<std::string> &arguments, milliseconds timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    ChildProcess opener =
        ChildProcess::start(path, arguments, {.output = -1, .mergesError = false, .newSession = true});
    if (!opener.isStarted())
        return false;
    opener.waitUntil(deadline);
    return true;
}

} // namespace tarnvale
