#include "discovery/docker.h"

#include "discovery/findTool.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace tarnvale {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

/// Gives `HOME` another value for as long as it lives.
class HomeAt {
public:
    explicit HomeAt(const std::string &folder) : m_before(homeFolder()) { setenv("HOME", folder.c_str(), 1); }
    HomeAt(const HomeAt &) = delete;
    HomeAt &operator=(const HomeAt &) = delete;
    ~HomeAt() { setenv("HOME", m_before.c_str(), 1); }

private:
    std::string m_before;
};

TEST(DockerTest, publishedPortsAreRead) {
    EXPECT_THAT(
        parseDockerPorts(readRecording(TARNVALE_TESTS_FOLDER, "discovery", "docker-ps.txt")),
        UnorderedElementsAre(Pair(8080, "web \u00B7 nginx:1.25"), Pair(15432, "db \u00B7 postgres:16")));
}

TEST(DockerTest, onlySinglePublishedPortsCount) {
    struct Row {
        std::string_view ports;
        std::string_view reason;
    };
    constexpr std::array rows{
        Row{"", "nothing at all"},
        Row{"6379/tcp", "not published"},
        Row{"0.0.0.0:8000-8001->8000-8001/tcp", "a range"},
        Row{"80->80/tcp", "no colon before the number"},
        Row{":->80/tcp", "no number"},
        Row{":80x->80/tcp", "a letter before the arrow"},
        Row{":x80->80/tcp", "a letter after the colon"},
        Row{":80 ->80/tcp", "a blank before the arrow"},
        Row{":80-80/tcp", "no arrow"},
        Row{":80-", "cut short"},
        Row{":99999999999999999999->80/tcp", "beyond any number"},
        Row{"->->", "arrows alone"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(parseDockerPorts("web\tnginx\t" + std::string(row.ports) + "\n"), IsEmpty())
            << row.reason;
}

TEST(DockerTest, everyPortOfALineCounts) {
    EXPECT_THAT(parseDockerPorts("web\tnginx\t0.0.0.0:8080->80/tcp, :::8080->80/tcp, 0.0.0.0:8443->443/tcp"),
                UnorderedElementsAre(Pair(8080, "web \u00B7 nginx"), Pair(8443, "web \u00B7 nginx")));
    EXPECT_THAT(parseDockerPorts("dns\tdns\t0.0.0.0:53->53/udp, :1->:2->3/tcp"),
                UnorderedElementsAre(Pair(53, "dns \u00B7 dns"), Pair(1, "dns \u00B7 dns"),
                                     Pair(2, "dns \u00B7 dns")));
}

TEST(DockerTest, aLaterLineWinsAPort) {
    EXPECT_THAT(parseDockerPorts("old\ta\t:80->80/tcp\nnew\tb\t:80->80/tcp\n"),
                UnorderedElementsAre(Pair(80, "new \u00B7 b")));
}

TEST(DockerTest, aLineNeedsExactlyThreePieces) {
    EXPECT_THAT(parseDockerPorts("web\t:80->80/tcp\n"), IsEmpty());
    EXPECT_THAT(parseDockerPorts("web\tnginx\t:80->80/tcp\tmore\n"), IsEmpty());
    EXPECT_THAT(parseDockerPorts("web nginx :80->80/tcp\n"), IsEmpty());
}

TEST(DockerTest, emptyPiecesAreKept) {
    EXPECT_THAT(parseDockerPorts("\t\t:80->80/tcp\n"), UnorderedElementsAre(Pair(80, " \u00B7 ")));
    EXPECT_THAT(parseDockerPorts("web\t\t:80->80/tcp\n"), UnorderedElementsAre(Pair(80, "web \u00B7 ")));
}

TEST(DockerTest, anEnginesErrorTextGivesNothing) {
    EXPECT_THAT(parseDockerPorts("Cannot connect to the Docker daemon at unix:///var/run/docker.sock."),
                IsEmpty());
}

TEST(DockerTest, outputCutAtAnyByteIsNoMoreThanTheWhole) {
    const std::string whole = readRecording(TARNVALE_TESTS_FOLDER, "discovery", "docker-ps.txt");
    for (std::size_t size = 0; size <= whole.size(); ++size)
        ASSERT_LE(parseDockerPorts(std::string(whole, 0, size)).size(), 2u) << size;
}

TEST(DockerTest, theExecutableIsTheFirstOfTheCandidates) {
    const TemporaryFolder home;
    const HomeAt moved(home.path());
    home.writeScript(".orbstack/bin/docker", "exit 0");
    home.writeScript(".local/bin/docker", "exit 0");
    EXPECT_EQ(dockerPath(), firstExecutable({"/usr/local/bin/docker", "/opt/homebrew/bin/docker",
                                             home.path(".orbstack/bin/docker")}));
}

TEST(DockerTest, theEngineIsAskedForNamesImagesAndPorts) {
    const TemporaryFolder folder;
    const std::string docker =
        folder.writeScript("docker", "printf '[%s]' \"$@\" > '" + folder.path("asked") + "'\n" +
                                         "printf 'web\\tnginx\\t:8080->80/tcp\\n'\n"
                                         "echo 'a remark' >&2");
    EXPECT_THAT(queryDockerPorts(docker), UnorderedElementsAre(Pair(8080, "web \u00B7 nginx")));
    EXPECT_EQ(readFile(folder.path("asked")), "[ps][--format][{{.Names}}\t{{.Image}}\t{{.Ports}}]");
}

TEST(DockerTest, withoutDockerThereAreNoPorts) {
    EXPECT_THAT(queryDockerPorts(std::nullopt), IsEmpty());
    EXPECT_THAT(queryDockerPorts("/nonexistent/docker"), IsEmpty());
}

} // namespace
} // namespace tarnvale
