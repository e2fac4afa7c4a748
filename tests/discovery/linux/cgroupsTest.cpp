#include "discovery/linux/cgroups.h"

#include "support/FakeProc.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CgroupsTest, theUnifiedPathIsTaken) {
    struct Row {
        const char *content;
        const char *path;
        const char *reason;
    };
    const Row rows[]{
        {"0::/user.slice/user-1000.slice/user@1000.service/app.slice/web.service\n",
         "/user.slice/user-1000.slice/user@1000.service/app.slice/web.service", "unified alone"},
        {"12:pids:/system.slice/web.service\n1:name=systemd:/system.slice/web.service\n"
         "0::/system.slice/web.service\n",
         "/system.slice/web.service", "hybrid"},
        {"9:name=systemd:/system.slice/web.service\n4:memory:/x\n0::/\n", "/system.slice/web.service",
         "hybrid, and the unified hierarchy isn't used"},
        {"9:name=systemd:/\n4:memory:/process_api/c4\n0::/\n", "/", "hybrid without a service manager"},
        {"11:cpu,cpuacct:/x\n1:name=systemd:/system.slice/web.service\n", "/system.slice/web.service",
         "the old hierarchies alone"},
        {"11:cpu,cpuacct:/x\n4:memory:/y\n", "", "no hierarchy of systemd's"},
        {"", "", "a process that has gone"},
        {"0::", "", "cut short"},
        {"0", "", "cut shorter"},
        {"0::/system.slice/web.service", "/system.slice/web.service", "no final line feed"},
        {"0::/a:b/c::d\n", "/a:b/c::d", "colons are part of the path"},
        {"10::/system.slice/x.service\n", "", "another hierarchy"},
        {"5:devices:/x:name=systemd:/system.slice/fake.service\n", "",
         "a group of another hierarchy can't pass for systemd's"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseCgroupFile(row.content), row.path) << row.reason;
}

TEST(CgroupsTest, onlyRealPidsAreMembers) {
    EXPECT_THAT(parseCgroupProcs("1\n42\n2147483647\n"), ElementsAre(1, 42, 2147483647));
    EXPECT_THAT(parseCgroupProcs("7"), ElementsAre(7));
    EXPECT_THAT(parseCgroupProcs("0\n5\n0\n"), ElementsAre(5)) << "0 is a process of another pid namespace";
    EXPECT_THAT(parseCgroupProcs("-1\n5\nx\n2147483648\n 6\n6 \n"), ElementsAre(5));
    EXPECT_THAT(parseCgroupProcs(""), IsEmpty());
}

TEST(CgroupsTest, theInnermostUnitIsTheUnit) {
    struct Row {
        const char *path;
        const char *unit;
    };
    const Row rows[]{
        {"/system.slice/nginx.service", "nginx.service"},
        {"/system.slice/nginx.service/workers/blue", "nginx.service"},
        {"/user.slice/user-1000.slice/user@1000.service/app.slice/web.service", "web.service"},
        {"/user.slice/user-1000.slice/user@1000.service/init.scope", "init.scope"},
        {"/user.slice/user-1000.slice/session-3.scope", "session-3.scope"},
        {"/user.slice/user-1000.slice/user@1000.service/app.slice/app-org.gnome.Terminal.slice/"
         "vte-spawn-1f0.scope",
         "vte-spawn-1f0.scope"},
        {"/system.slice/system-web.slice/web@blue.service", "web@blue.service"},
        {"/app.slice/my\\x2dsite.service", "my\\x2dsite.service"},
        {"/system.slice/cups.socket", "cups.socket"},
        {"/user.slice/user-1000.slice", "user-1000.slice"},
        {"/machine.slice/libpod-0123.scope/container", "libpod-0123.scope"},
        {"/docker/0123456789ab", ""},
        {"/init.scope", "init.scope"},
        {"/", ""},
        {"", ""},
        // systemd puts "_" before names that the kernel's own files could have: cpu.service, cgroup.service.
        {"/system.slice/_memory.service", "memory.service"},
        {"/system.slice/__odd.service", "_odd.service"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(unitOfCgroup(row.path), row.unit) << row.path;
}

TEST(CgroupsTest, aDevelopersServiceIsAServiceUnit) {
    for (const char *unit :
         {"nginx.service", "postgresql@15-main.service", "homebrew.redis.service", "web@blue.service",
          "my\\x2dsite.service", "application.service", "session.service", "run-r1f0.service", "x.service"})
        EXPECT_TRUE(isServiceUnit(unit)) << unit;
}

TEST(CgroupsTest, whatKeepsTheSystemOrTheDesktopRunningIsNoServiceUnit) {
    for (const char *unit : {"systemd-resolved.service",
                             "dbus.service",
                             "dbus-broker.service",
                             "user@1000.service",
                             "init.scope",
                             "session-3.scope",
                             "app-org.kde.konsole-1234.scope",
                             "app-x@autostart.service",
                             "app-gnome-firefox-1234.scope",
                             "gnome-session-manager@gnome.service",
                             "org.gnome.Shell@wayland.service",
                             "plasma-plasmashell.service",
                             "xdg-desktop-portal.service",
                             "gvfs-daemon.service",
                             "pipewire-pulse.service",
                             "display-manager.service",
                             "docker.service",
                             "containerd.service",
                             "podman.service",
                             "snap.docker.dockerd.service",
                             "docker-0123.scope",
                             "libpod-0123.scope",
                             "vte-spawn-1f0.scope",
                             "cups.socket",
                             "user-1000.slice",
                             "nginx",
                             ""})
        EXPECT_FALSE(isServiceUnit(unit)) << unit;
}

TEST(CgroupsTest, aManagerKeepsItselfInItsInitScope) {
    EXPECT_TRUE(isManagerCgroup("/init.scope"));
    EXPECT_TRUE(isManagerCgroup("/user.slice/user-1000.slice/user@1000.service/init.scope"));
    EXPECT_FALSE(isManagerCgroup("/user.slice/user-1000.slice/user@1000.service/app.slice/web.service"));
    EXPECT_FALSE(isManagerCgroup("/system.slice/my-init.scope"));
    EXPECT_FALSE(isManagerCgroup("/"));
    EXPECT_FALSE(isManagerCgroup(""));
}

TEST(CgroupsTest, theUnifiedHierarchyIsFoundAmongTheMounts) {
    struct Row {
        const char *mounts;
        const char *point;
        const char *reason;
    };
    const Row rows[]{
        {"proc /proc proc rw 0 0\ncgroup2 /sys/fs/cgroup cgroup2 rw,nosuid 0 0\n", "/sys/fs/cgroup",
         "unified alone"},
        {"tmpfs /sys/fs/cgroup tmpfs rw 0 0\ncgroup /sys/fs/cgroup/systemd cgroup rw,name=systemd 0 0\n"
         "cgroup2 /sys/fs/cgroup/unified cgroup2 rw 0 0\n",
         "/sys/fs/cgroup/unified", "hybrid"},
        {"none /c cgroup2 rw 0 0\ncgroup2 /d cgroup2 rw 0 0\n", "/c",
         "the type tells, not the name; the first of two"},
        {"cgroup /sys/fs/cgroup/pids cgroup rw,pids 0 0\n", "", "the old hierarchies alone"},
        {"cgroup2 /sys/fs/cgroup tmpfs rw 0 0\n", "", "only called so"},
        {"cgroup2 /sys/fs/cgroup", "", "cut short"},
        {"", "", "nothing mounted"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseCgroupMount(row.mounts), row.point) << row.reason;
}

TEST(CgroupTreeTest, aGroupIsFoundByTheInodeOfItsFolder) {
    FakeProc proc;
    const auto web = proc.addGroup("/app.slice/web.service", {5, 6});
    const auto inner = proc.addGroup("/app.slice/web.service/inner", {7});
    CgroupTree tree(proc.cgroupMount());
    EXPECT_EQ(tree.path(web), "/app.slice/web.service");
    EXPECT_EQ(tree.path(inner), "/app.slice/web.service/inner");
    EXPECT_THAT(tree.processes("/app.slice/web.service"), ElementsAre(5, 6));
    EXPECT_THAT(tree.processes("/app.slice/none.service"), IsEmpty());
    EXPECT_EQ(tree.path(proc.addGroup("", {})), "/");
}

TEST(CgroupTreeTest, aNewGroupIsFoundInTheNextScan) {
    FakeProc proc;
    CgroupTree tree(proc.cgroupMount());
    EXPECT_EQ(tree.path(1'000'000'000'000u), std::nullopt);
    const auto web = proc.addGroup("/web.service", {});
    EXPECT_EQ(tree.path(web), std::nullopt) << "the tree is walked once in a scan";
    tree.beginScan();
    EXPECT_EQ(tree.path(web), "/web.service");
}

TEST(CgroupTreeTest, aGroupThatIsGoneHasNoPath) {
    FakeProc proc;
    const auto old = proc.addGroup("/web.service", {5});
    CgroupTree tree(proc.cgroupMount());
    ASSERT_EQ(tree.path(old), "/web.service");
    // Its service was restarted: another group has the path now.
    std::filesystem::rename(proc.cgroupMount() + "/web.service", proc.folder() + "/removed");
    const auto fresh = proc.addGroup("/web.service", {6});
    tree.beginScan();
    EXPECT_EQ(tree.path(old), std::nullopt);
    tree.beginScan();
    EXPECT_EQ(tree.path(fresh), "/web.service");
}

TEST(CgroupTreeTest, withoutTheHierarchyNothingIsFound) {
    CgroupTree nowhere("");
    EXPECT_EQ(nowhere.path(1), std::nullopt);
    CgroupTree missing("/nonexistent/cgroup");
    EXPECT_EQ(missing.path(1), std::nullopt);
    EXPECT_THAT(missing.processes("/web.service"), IsEmpty());
}

} // namespace
} // namespace tarnvale
