// Draws pages of local web servers for the application that started it; see platform/PreviewProtocol.h.
//
// Tests, which may run as root, set TARNVALE_PREVIEW_SANDBOX=off.

#include "preview-renderer/PreviewService.h"
#include "preview-renderer/boundProcess.h"

#include <QApplication>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sysexits.h>
#include <unistd.h>

namespace tarnvale {
namespace {

/// Takes a standard stream for itself, so that no program that this one starts has it, nor anything that it
/// prints.
FileDescriptor take(int stream) {
    FileDescriptor taken(fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, stream);
    close(nothing);
    return taken;
}

} // namespace
} // namespace tarnvale

int main(int, char **argv) {
    using namespace tarnvale;
    const char *const sandbox = std::getenv("TARNVALE_PREVIEW_SANDBOX");
    const bool isSandboxed = sandbox == nullptr || std::strcmp(sandbox, "off") != 0;
    if (isSandboxed && geteuid() == 0)
        return EX_NOPERM; // a browser's sandbox holds nobody who is root
    boundProcess();
    prepareEnvironment(isSandboxed);
    FileDescriptor input = take(STDIN_FILENO);
    FileDescriptor output = take(STDOUT_FILENO);
    int words = 1;
    const QApplication application(words, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    PreviewService service(std::move(input), std::move(output));
    service.run();
    return QApplication::exec();
}
