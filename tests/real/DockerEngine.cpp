#include "real/DockerEngine.h"

#include "discovery/docker.h"
#include "real/ControlGroups.h"
#include "support/TestProcess.h"

#include <cstring>
#include <filesystem>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

/// Gives this process a network of its own with nothing but a loopback, and mounts that nobody else sees.
/// `/run` is empty there, so that no engine finds another's sockets.
bool enterNamespaces() {
    if (unshare(CLONE_NEWNET | CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("run", "/run", "tmpfs", 0, "mode=755") != 0)
        return false;
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    strncpy(request.ifr_name, "lo", sizeof request.ifr_name - 1);
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    return ioctl(socket.get(), SIOCSIFFLAGS, &request) == 0;
}

} // namespace

DockerEngine::DockerEngine() : m_group("tarnvale-test-" + std::to_string(getpid())) {
    const std::string engine = findProgram("dockerd").value_or("");
    m_docker = dockerPath().value_or("");
    if (getuid() != 0)
        m_problem = "only root can start a Docker engine";
    else if (engine.empty() || m_docker.empty() || !findProgram("iptables"))
        m_problem = "docker and iptables are not installed";
    else if (!findProgram("busybox"))
        m_problem = "busybox is not installed";
    else if (!enterNamespaces())
        m_problem = std::string("no namespaces can be made here: ") + strerror(errno);
    if (!m_problem.empty())
        return;
    m_variables.emplace_back("DOCKER_HOST", "unix://" + socketPath());
    m_variables.emplace_back("DOCKER_CONFIG", m_folder.path("config"));
    m_engine.emplace(std::vector<std::string>{engine, "--data-root", m_folder.path("data"), "--exec-root",
                                              m_folder.path("exec"), "-H", "unix://" + socketPath(),
                                              "--pidfile", m_folder.path("pid"), "--cgroup-parent",
                                              "/" + m_group, "--exec-opt", "native.cgroupdriver=cgroupfs"});
    const auto answers = [&] { return docker({"version"}).status == 0; };
    if (!eventually([&] { return !isAlive(m_engine->pid()) || answers(); }, 30s) || !isAlive(m_engine->pid()))
        m_problem = "no Docker engine can be started here: " + m_engine->output();
    else
        importImage();
}

DockerEngine::~DockerEngine() {
    if (m_engine && m_problem.empty())
        static_cast<void>(
            runProgram({"/bin/sh", "-c", "\"$1\" rm --force $(\"$1\" ps --all --quiet)", "sh", m_docker}));
    m_engine.reset();
    removeControlGroups(m_group);
}

void DockerEngine::importImage() {
    std::filesystem::create_directories(m_folder.path("root/bin"));
    std::filesystem::copy_file(*findProgram("busybox"), m_folder.path("root/bin/busybox"));
    m_folder.write("root/www/index.html", page);
    const ProgramRun run = runProgram({"/bin/sh", "-c", "tar -C \"$1\" -c . | \"$2\" import - web:1.0", "sh",
                                       m_folder.path("root"), m_docker});
    if (run.status != 0)
        m_problem = "no image can be made here: " + run.error;
}

bool DockerEngine::serve(const std::string &name, const std::string &published) const {
    return docker({"run", "--detach", "--stop-timeout", "1", "--env", std::string(familyVariable), "--name",
                   name, "--publish", published, "web:1.0", "/bin/busybox", "httpd", "-f", "-p", "80", "-h",
                   "/www"})
               .status == 0;
}

void DockerEngine::remove(const std::string &name) const {
    static_cast<void>(docker({"rm", "--force", name}));
}

ProgramRun DockerEngine::docker(const std::vector<std::string> &words) const {
    std::vector<std::string> all{m_docker};
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(all);
}

} // namespace tarnvale
