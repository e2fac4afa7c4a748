#include "discovery/linux/LinuxMachine.h"

#include "discovery/scanListeningPorts.h"
#include "support/FakeProc.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// Who started a server on 8080: services, applications, agents.
class LinuxMachineOriginsTest : public testing::Test {
protected:
    LinuxMachineOriginsTest() {
        proc.listen("0100007F:1F90", 31337);
        proc.add({.pid = 20, .comm = "systemd", .cgroup = inUserManager("init.scope")});
        proc.applicationFolders = {applications};
    }

    static std::string inUserManager(const std::string &rest) {
        return "0::/user.slice/user-1000.slice/user@1000.service/" + rest + "\n";
    }

    void addServer(Pid ppid, const std::string &cgroup = "0::/\n") {
        proc.add({.pid = 100,
                  .ppid = ppid,
                  .comm = "node",
                  .words = {"node", "server.js"},
                  .cgroup = cgroup,
                  .sockets = {{3, 31337}}});
    }

    void addApplication(const std::string &id, const std::string &exec = "/nonexistent/program") {
        proc.write("applications/" + id + ".desktop",
                   "[Desktop Entry]\nType=Application\nName=x\nExec=" + exec + "\n");
    }

    std::string addProgram(const std::string &path) {
        proc.write(path, "#!/bin/sh\n");
        std::filesystem::permissions(proc.folder() + "/" + path, std::filesystem::perms::owner_all);
        return std::filesystem::canonical(proc.folder() + "/" + path);
    }

    /// The one record of a fresh machine's scan.
    ListeningPort scan() {
        LinuxMachine machine(proc.sources());
        const auto ports = scanListeningPorts(machine);
        EXPECT_THAT(ports, SizeIs(1));
        return ports.empty() ? ListeningPort{} : ports.front();
    }

    FakeProc proc;
    std::string applications = proc.folder() + "/applications";
};

TEST_F(LinuxMachineOriginsTest, theProcessThatTheManagerStartedIsItsService) {
    addServer(1, "0::/system.slice/web.service\n");
    EXPECT_EQ(scan().service, "web.service");
    EXPECT_EQ(scan().serviceManager, ServiceManager::systemd);
}

TEST_F(LinuxMachineOriginsTest, aUsersManagerIsToldFromTheSystems) {
    addServer(20, inUserManager("app.slice/web.service"));
    EXPECT_EQ(scan().service, "web.service");
    EXPECT_EQ(scan().serviceManager, ServiceManager::systemdUser);
}

TEST_F(LinuxMachineOriginsTest, aChildOfTheServiceBelongsToIt) {
    proc.add({.pid = 50, .ppid = 20, .comm = "npm", .cgroup = inUserManager("app.slice/web.service")});
    addServer(50, inUserManager("app.slice/web.service"));
    EXPECT_EQ(scan().service, "web.service");
    EXPECT_EQ(scan().serviceManager, ServiceManager::systemdUser);
}

TEST_F(LinuxMachineOriginsTest, aGrandchildOfTheServiceDoesNot) {
    proc.add({.pid = 50, .ppid = 20, .comm = "npm", .cgroup = inUserManager("app.slice/web.service")});
    proc.add({.pid = 51, .ppid = 50, .comm = "sh", .cgroup = inUserManager("app.slice/web.service")});
    addServer(51, inUserManager("app.slice/web.service"));
    EXPECT_EQ(scan().service, std::nullopt);
}

TEST_F(LinuxMachineOriginsTest, groupsThatAreNoServicesHaveNone) {
    for (const std::string &cgroup :
         {std::string("0::/system.slice/docker.service\n"),
          std::string("0::/system.slice/systemd-resolved.service\n"),
          std::string("0::/user.slice/user-1000.slice/session-3.scope\n"), std::string("0::/\n"),
          std::string(), inUserManager("app.slice/app-org.x.Editor-5.scope"),
          inUserManager("app.slice/app-x@autostart.service")}) {
        addServer(1, cgroup);
        EXPECT_EQ(scan().service, std::nullopt) << cgroup;
        proc.remove(100);
    }
}

TEST_F(LinuxMachineOriginsTest, theManagersOwnCopyOfASocketIsNotShown) {
    addServer(20, inUserManager("app.slice/web.service"));
    proc.openSocket(20, 9, 31337);
    const auto port = scan();
    EXPECT_EQ(port.pid, 100);
    EXPECT_EQ(port.service, "web.service");
}

TEST_F(LinuxMachineOriginsTest, aManagerAloneIsNeverAPlainServer) {
    // Without the socket's own group nobody can tell which unit waits here.
    proc.openSocket(1, 9, 31337);
    LinuxMachine machine(proc.sources());
    EXPECT_THAT(scanListeningPorts(machine), IsEmpty());
}

TEST_F(LinuxMachineOriginsTest, anApplicationIsKnownByItsUnit) {
    addApplication("org.x.Editor");
    proc.add({.pid = 50,
              .ppid = 20,
              .comm = "editor",
              .cgroup = inUserManager("app.slice/app-gnome-org.x.Editor-50.scope")});
    proc.add({.pid = 51, .ppid = 50, .comm = "bash", .cgroup = inUserManager("app.slice/other.scope")});
    addServer(51);
    EXPECT_EQ(scan().hostApp, applications + "/org.x.Editor.desktop");
}

TEST_F(LinuxMachineOriginsTest, aTabOfATerminalIsTheTerminals) {
    addApplication("org.x.Terminal");
    proc.add({.pid = 50,
              .ppid = 20,
              .comm = "bash",
              .cgroup = inUserManager("app.slice/app-org.x.Terminal.slice/vte-spawn-1.scope")});
    addServer(50, inUserManager("app.slice/app-org.x.Terminal.slice/vte-spawn-1.scope"));
    EXPECT_EQ(scan().hostApp, applications + "/org.x.Terminal.desktop");
}

TEST_F(LinuxMachineOriginsTest, anApplicationIsKnownByItsExecutable) {
    const std::string program = addProgram("opt/editor");
    addApplication("editor", program + " %F");
    proc.add({.pid = 50, .ppid = 1, .comm = "editor", .executable = program});
    proc.add({.pid = 51, .ppid = 50, .comm = "bash", .executable = "/usr/bin/bash"});
    addServer(51);
    EXPECT_EQ(scan().hostApp, applications + "/editor.desktop");
}

TEST_F(LinuxMachineOriginsTest, theNearestApplicationWins) {
    const std::string program = addProgram("opt/editor");
    addApplication("editor", program);
    addApplication("org.x.Terminal");
    proc.add({.pid = 50,
              .ppid = 1,
              .comm = "terminal",
              .cgroup = inUserManager("app.slice/app-org.x.Terminal-1.scope")});
    proc.add({.pid = 51, .ppid = 50, .comm = "editor", .executable = program});
    addServer(51);
    EXPECT_EQ(scan().hostApp, applications + "/editor.desktop");
}

TEST_F(LinuxMachineOriginsTest, theServerItselfIsNotItsHost) {
    addApplication("org.x.Server");
    addServer(1, inUserManager("app.slice/app-org.x.Server-1.scope"));
    EXPECT_EQ(scan().hostApp, std::nullopt);
}

TEST_F(LinuxMachineOriginsTest, thisProgramIsNoHost) {
    addApplication("dev.tarnvale.Tarnvale");
    proc.add({.pid = 50, .ppid = 1, .comm = "tarnvale", .executable = "/opt/tarnvale/bin/tarnvale"});
    addServer(50);
    EXPECT_EQ(scan().hostApp, std::nullopt) << "by its executable";
    proc.remove(50);
    proc.add({.pid = 50,
              .ppid = 1,
              .comm = "bash",
              .cgroup = inUserManager("app.slice/app-dev.tarnvale.Tarnvale-9.scope")});
    EXPECT_EQ(scan().hostApp, std::nullopt) << "by its unit";
}

TEST_F(LinuxMachineOriginsTest, thisProgramIsNoHostWithoutItsDesktopFileEither) {
    addApplication("org.x.Terminal");
    proc.add({.pid = 50,
              .ppid = 1,
              .comm = "terminal",
              .cgroup = inUserManager("app.slice/app-org.x.Terminal-1.scope")});
    proc.add({.pid = 51, .ppid = 50, .comm = "tarnvale", .executable = "/opt/tarnvale/bin/tarnvale"});
    addServer(51);
    EXPECT_EQ(scan().hostApp, std::nullopt) << "the terminal above it started us, not the server";
}

TEST_F(LinuxMachineOriginsTest, servicesHaveNoHost) {
    addApplication("org.x.Editor");
    proc.add({.pid = 50, .ppid = 20, .comm = "npm", .cgroup = inUserManager("app.slice/web.service")});
    proc.add(
        {.pid = 51, .ppid = 1, .comm = "x", .cgroup = inUserManager("app.slice/app-org.x.Editor-1.scope")});
    addServer(50);
    EXPECT_EQ(scan().service, "web.service");
    EXPECT_EQ(scan().hostApp, std::nullopt);
}

TEST_F(LinuxMachineOriginsTest, anAgentIsNamed) {
    proc.add({.pid = 50,
              .ppid = 1,
              .comm = "MainThread",
              .words = {"node", "/usr/lib/@openai/codex/bin/codex.js"},
              .executable = "/usr/bin/node"});
    proc.add({.pid = 51, .ppid = 50, .comm = "bash"});
    addServer(51);
    EXPECT_EQ(scan().agent, "Codex");
    proc.remove(50);
    proc.add({.pid = 50, .ppid = 1, .comm = "claude"});
    EXPECT_EQ(scan().agent, "Claude Code");
}

TEST_F(LinuxMachineOriginsTest, aCycleOfParentsEnds) {
    proc.add({.pid = 50, .ppid = 51});
    proc.add({.pid = 51, .ppid = 50});
    addServer(50);
    EXPECT_EQ(scan().pid, 100);
}

TEST_F(LinuxMachineOriginsTest, parentsOutsideThePidNamespaceEndTheChain) {
    addServer(0);
    EXPECT_EQ(scan().hostApp, std::nullopt);
    EXPECT_EQ(scan().service, std::nullopt);
}

TEST_F(LinuxMachineOriginsTest, aWorkerOfArtisanIsShownAsArtisan) {
    proc.add({.pid = 50,
              .ppid = 1,
              .comm = "php",
              .startTime = 80'000,
              .words = {"php", "artisan", "serve"},
              .cwd = "/srv/shop"});
    proc.add({.pid = 100,
              .ppid = 50,
              .comm = "php8.3",
              .residentPages = 512,
              .words = {"php8.3", "-S", "127.0.0.1:8080"},
              .cwd = "/srv/shop/public",
              .sockets = {{3, 31337}}});
    const auto port = scan();
    EXPECT_EQ(port.pid, 50);
    EXPECT_EQ(port.workerPID, 100);
    EXPECT_EQ(port.cwd, "/srv/shop");
    EXPECT_EQ(port.args, "php artisan serve");
    EXPECT_EQ(port.displayName(), "Laravel");
    EXPECT_EQ(port.startedAt, Instant{std::chrono::seconds(1'700'000'800)});
    EXPECT_EQ(port.memoryKB, 512 * sysconf(_SC_PAGESIZE) / 1024) << "the worker's";
}

} // namespace
} // namespace tarnvale
