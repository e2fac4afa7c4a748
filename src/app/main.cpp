#include "app/loadApplication.h"
#include "commands/runCommandLine.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Takes the numbers of standard streams that came closed, so that no file opened later gets one of them and
/// is written to by mistake. What stands there fails at the first use, as a closed stream does.
void occupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            _exit(1);
}

} // namespace

int main(int argc, char **argv) {
    occupyStandardStreams();
    const std::vector<std::string> arguments(argv, argv + argc);
    if (const auto status = tarnvale::runCommandLine(arguments))
        return *status;
    return tarnvale::loadApplication(argc, argv);
}
