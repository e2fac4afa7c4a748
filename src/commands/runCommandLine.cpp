#include "commands/runCommandLine.h"

#include "commands/serviceWords.h"
#include "discovery/Machine.h"
#include "discovery/formatUptime.h"
#include "discovery/isDevPort.h"
#include "discovery/managerName.h"
#include "discovery/scanListeningPorts.h"
#include "discovery/text.h"
#include "platform/process/ProcessHandle.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

namespace tarnvale {

namespace {

constexpr std::string_view usage =
    "usage: tarnctl ports [--all]   list listening dev ports (--all includes system processes)\n"
    "       tarnctl kill <port>     stop whatever is listening on <port>\n"
    "       tarnctl open <port>     open http://localhost:<port> in the browser";

using Words = std::vector<std::string>;

/// Prints a line and gives the exit status: `status`, or 1 when standard output couldn't take it.
std::int32_t print(const CommandLineWorld &world, const std::string &text, std::int32_t status) {
    return world.writeOutput(text + "\n") ? status : 1;
}

std::int32_t writeError(const CommandLineWorld &world, const std::string &text) {
    world.writeError(text + "\n");
    return 1;
}

/// A text in a column of `width`: padded, or cut to leave one blank, so that columns never touch.
std::string cell(std::string_view text, std::size_t width) {
    const std::string fit = printable(text);
    const std::size_t count = characterCount(fit);
    if (count < width)
        return fit + std::string(width - count, ' ');
    return std::string(firstCharacters(fit, width - 1)) + " ";
}

std::string row(std::string_view port, std::string_view pid, std::string_view up, std::string_view name,
                std::string_view command) {
    return cell(port, 8) + cell(pid, 8) + cell(up, 9) + cell(name, 28) + printable(command) + "\n";
}

std::string commandCell(const ListeningPort &port) {
    std::string text = port.command;
    if (const auto formula = port.brewService())
        text += " (brew: " + *formula + ")";
    else if (port.service)
        text += " (" + std::string(managerName(port.serviceManager)) + ")";
    if (port.isExposed)
        text += "  [network]";
    return text;
}

std::int32_t printPorts(bool includeAll, const CommandLineWorld &world) {
    Machine &machine = world.machine();
    std::vector<ListeningPort> ports = scanListeningPorts(machine);
    if (!includeAll)
        std::erase_if(ports, [](const ListeningPort &port) { return !isDevPort(port); });
    if (ports.empty())
        return print(world, "No dev servers running.", 0);
    return world.writeOutput(portTable(ports, machine.now())) ? 0 : 1;
}

std::string_view reasonText(int error) {
    return strerror(error);
}

/// "node on :3000 is", the start of every refusal.
std::string subject(const ListeningPort &port) {
    return printable(port.command) + " on :" + std::to_string(port.port) + " is";
}

/// Why `port` isn't ours to signal, with the command that stops it; nothing for a plain process.
std::optional<std::string> refusal(const ListeningPort &port, std::uint32_t uid) {
    if (port.service)
        return subject(port) + " a " + std::string(managerName(port.serviceManager)) +
               " service — stop it with: " + printable(stopAdvice(port, uid));
    if (const auto container = port.containerName())
        return subject(port) + " Docker's port proxy — stop the container with: docker stop " +
               printable(*container);
    if (port.isDockerProxy())
        return subject(port) + " Docker's port proxy — stop the container with: docker ps, then docker stop "
                               "<container>";
    return std::nullopt;
}

/// Sends SIGTERM to the process of `port`, and half a second later to its worker; 0 or an `errno`.
///
/// The handles are opened before the process is looked at again, so that what was looked at is what gets the
/// signal, and the worker's before the first signal, since its pid may be free soon after.
int terminate(const ListeningPort &port, const CommandLineWorld &world) {
    const ProcessHandle process(port.pid);
    const std::optional<ProcessHandle> worker =
        port.workerPID ? std::optional<ProcessHandle>(*port.workerPID) : std::nullopt;
    Machine &machine = world.machine();
    const ProcessDetailsMap current = machine.currentDetails({port.pid});
    const auto details = current.find(port.pid);
    if (port.startedAt && details != current.end() && !isSameProcess(port, details->second, machine.now()))
        return ESRCH;
    if (const int error = process.signal(SIGTERM); error != 0)
        return error;
    if (worker) {
        world.sleep(std::chrono::milliseconds(500));
        static_cast<void>(worker->signal(SIGTERM));
    }
    return 0;
}

std::int32_t stop(const ListeningPort &port, const CommandLineWorld &world) {
    if (const auto text = refusal(port, world.uid))
        return print(world, *text, 1);
    const std::string name = printable(port.command) + " (PID " + std::to_string(port.pid) + ")";
    if (const int error = terminate(port, world); error != 0)
        return writeError(world, "Couldn't stop " + name + ": " + std::string(reasonText(error)) + ".");
    return print(world, "Stopped " + name + " on :" + std::to_string(port.port) + ".", 0);
}

std::int32_t stopPort(std::int64_t number, const CommandLineWorld &world) {
    std::vector<ListeningPort> ports = scanListeningPorts(world.machine());
    std::erase_if(ports, [&](const ListeningPort &port) { return port.port != number; });
    if (ports.empty())
        return writeError(world, "Nothing is listening on :" + std::to_string(number) + ".");
    std::int32_t status = 0;
    for (const ListeningPort &port : ports)
        status = std::max(status, stop(port, world));
    return status;
}

std::int32_t openPort(std::int64_t number, const CommandLineWorld &world) {
    world.openURL("http://localhost:" + std::to_string(number));
    return 0;
}

/// `kill` and `open`: exactly one word, and it is a number.
std::int32_t runWithPort(const Words &words, const CommandLineWorld &world) {
    const std::string &command = words.front();
    const auto number = words.size() == 2 ? parseInteger<std::int64_t>(words[1]) : std::nullopt;
    if (!number)
        return writeError(world, "tarnctl " + command + " needs a port number\n\n" + std::string(usage));
    return command == "kill" ? stopPort(*number, world) : openPort(*number, world);
}

} // namespace

std::optional<std::int32_t> runCommandLine(const std::vector<std::string> &arguments,
                                           const CommandLineWorld &world) {
    if (arguments.size() < 2)
        return std::nullopt;
    const Words words(arguments.begin() + 1, arguments.end());
    const std::string &command = words.front();
    if (command == "ports")
        return printPorts(std::find(words.begin(), words.end(), "--all") != words.end(), world);
    if (command == "kill" || command == "open")
        return runWithPort(words, world);
    if (command == "help" || command == "--help" || command == "-h")
        return print(world, std::string(usage), 0);
    return std::nullopt;
}

std::optional<std::int32_t> runCommandLine(const std::vector<std::string> &arguments) {
    return runCommandLine(arguments, CommandLineWorld::real());
}

std::string portTable(const std::vector<ListeningPort> &ports, Instant now) {
    std::string table = row("PORT", "PID", "UP", "NAME", "COMMAND");
    for (const ListeningPort &port : ports) {
        const std::string up =
            port.startedAt ? formatUptime(std::chrono::duration<double>(now - *port.startedAt).count()) : "-";
        table += row(":" + std::to_string(port.port), std::to_string(port.pid), up, port.title(),
                     commandCell(port));
    }
    return table;
}

} // namespace tarnvale
