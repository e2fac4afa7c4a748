#include "platform/linux/ToolReader.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tarnvale {

std::expected<ToolReader *, int>
ToolReader::start(const std::string &path, const std::vector<std::string> &arguments, Listener listener) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return std::unexpected(errno);
    FileDescriptor readEnd(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    fcntl(readEnd.get(), F_SETFL, O_NONBLOCK);
    std::unique_ptr<ToolReader> reader(new ToolReader(std::move(readEnd), std::move(listener)));
    auto process = SpawnedProcess::start(
        {.path = path,
         .arguments = arguments,
         .descriptors = {{STDOUT_FILENO, writeEnd.get()}, {STDERR_FILENO, writeEnd.get()}}},
        [tool = reader.get()](int) { tool->processEnded(); });
    if (!process)
        return std::unexpected(process.error());
    reader->m_process = std::move(*process);
    reader->setParent(QCoreApplication::instance());
    return reader.release();
}

ToolReader::ToolReader(FileDescriptor output, Listener listener)
    : m_listener(std::move(listener)),
      m_output(std::move(output)),
      m_notifier(whenReadable(m_output.get(), [this] { readOnce(); })) {}

/// Reads one piece, so that a flood leaves the event loop its turn; false when nothing more is there now.
bool ToolReader::readOnce() {
    std::array<char, std::size_t{64} << 10> piece; // NOLINT(*-member-init): read(2) fills it
    const ssize_t count = read(m_output.get(), piece.data(), piece.size());
    if (count > 0)
        tell(m_text.take({piece.data(), static_cast<std::size_t>(count)}));
    else if (count == 0 || (errno != EAGAIN && errno != EINTR))
        closeOutput();
    return count > 0;
}

/// A child that the tool left behind may hold the pipe open for ever: only what is there now counts.
void ToolReader::processEnded() {
    constexpr int mostPieces = 32; // a pipe holds 1 MiB at most, unless root has made it larger
    for (int i = 0; i < mostPieces && m_output.isOpen() && readOnce(); ++i) {
    }
    closeOutput();
    const auto onEnd = m_listener.onEnd; // the call may end the listening
    if (onEnd)
        onEnd();
    deleteLater();
}

void ToolReader::closeOutput() {
    m_notifier.reset();
    m_output.reset();
    tell(m_text.finish());
}

void ToolReader::tell(const std::string &text) const {
    const auto onOutput = m_listener.onOutput;
    if (onOutput && !text.empty())
        onOutput(text);
}

} // namespace tarnvale
