#include "discovery/StockToolsMachine.h"

#include "discovery/scanListeningPorts.h"
#include "discovery/text.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

const std::string listingCall = "lsof[-nP][+c][0][-iTCP][-sTCP:LISTEN][-Fpcn]";
const std::string tableCall = "ps[-axww][-o][pid=,ppid=,comm=]";

std::string detailsCall(const std::string &pids) {
    return "ps[-ww][-o][pid=,ppid=,etime=,%cpu=,rss=,args=][-p][" + pids + "]";
}

std::string foldersCall(const std::string &pids) {
    return "lsof[-a][-d][cwd][-p][" + pids + "][-Fpn]";
}

/// Stand-ins for the tools. Each notes its arguments and answers with the file that bears the name of its
/// kind of question, when a test wrote one.
class StockToolsMachineTest : public testing::Test {
protected:
    StockToolsMachineTest() {
        stand("lsof", "case \"$1\" in -nP) answer listing ;; *) answer folders ;; esac");
        stand("ps", "case \"$1\" in -axww) answer table ;; *) answer \"details $5\" ;; esac");
        stand("launchctl", "answer services");
    }

    void stand(const std::string &tool, const std::string &body) {
        m_folder.writeScript(tool, "cd '" + m_folder.path() + "'\n{ printf '" + tool +
                                       "'; printf '[%s]' \"$@\"; echo; } >> calls\n"
                                       "echo \"a remark of " +
                                       tool +
                                       "\" >&2\n"
                                       "answer() { [ ! -e \"answers/$1\" ] || cat \"answers/$1\"; }\n" +
                                       body);
    }

    void answer(const std::string &question, std::string_view text) {
        m_folder.write("answers/" + question, text);
    }

    std::vector<std::string> calls() {
        const std::string text = readFile(m_folder.path("calls"));
        const auto lines = nonEmptyLines(text);
        return {lines.begin(), lines.end()};
    }

    TemporaryFolder m_folder;
    StockToolsMachine m_machine{{.lsof = m_folder.path("lsof"),
                                 .ps = m_folder.path("ps"),
                                 .launchctl = m_folder.path("launchctl"),
                                 .ownBundle = "/Applications/Tarnvale.app"}};
};

TEST_F(StockToolsMachineTest, everyQuestionRunsItsTool) {
    EXPECT_THAT(m_machine.listeningSockets(), IsEmpty());
    EXPECT_THAT(m_machine.processDetails({10, 20}), IsEmpty());
    EXPECT_THAT(m_machine.currentDetails({30}), IsEmpty());
    EXPECT_THAT(m_machine.workingDirectories({10, 20, 5}), IsEmpty());
    EXPECT_THAT(m_machine.serviceLabels({10}), IsEmpty());
    EXPECT_THAT(m_machine.processTable({10}), IsEmpty());
    EXPECT_THAT(calls(), ElementsAre(listingCall, detailsCall("10,20"), detailsCall("30"),
                                     foldersCall("10,20,5"), "launchctl[list]", tableCall));
}

TEST_F(StockToolsMachineTest, answersAreParsed) {
    answer("listing", "p10\ncnode\nn*:3000\n");
    answer("details 10", " 10 5 01:00 1,5 100 node server.js\n");
    answer("folders", "p10\nn/Users/me/my shop");
    answer("services", "10\t0\tcom.example.agent\n");
    answer("table", "10 5 /usr/bin/node\n");
    EXPECT_THAT(m_machine.listeningSockets(),
                ElementsAre(ListeningPort{.pid = 10, .command = "node", .port = 3000, .isExposed = true}));
    EXPECT_EQ(m_machine.processDetails({10}).at(10).cpu, 1.5);
    EXPECT_THAT(m_machine.workingDirectories({10}), UnorderedElementsAre(Pair(10, "/Users/me/my shop")));
    EXPECT_EQ(m_machine.serviceLabels({10}).at(10).label, "com.example.agent");
    EXPECT_EQ(m_machine.processTable({10}).at(10), (ProcessNode{5, "/usr/bin/node"}));
}

TEST_F(StockToolsMachineTest, aRemarkInPlaceOfAFolderIsNone) {
    answer("folders",
           "p1\nn/proc/1/cwd (readlink: Permission denied)\np2\nn/proc/2/cwd\np3\nn/home/x (readlink: y)\n");
    EXPECT_THAT(m_machine.workingDirectories({1, 2, 3}),
                UnorderedElementsAre(Pair(2, "/proc/2/cwd"), Pair(3, "/home/x (readlink: y)")));
}

TEST_F(StockToolsMachineTest, withoutSocketsNoOtherToolRuns) {
    EXPECT_THAT(scanListeningPorts(m_machine), IsEmpty());
    EXPECT_THAT(calls(), ElementsAre(listingCall));
}

TEST_F(StockToolsMachineTest, aScanRunsItsToolsInOrder) {
    answer("listing", "p20\ncphp\nn127.0.0.1:8000\np9\ncnode\nn*:3000\np20\ncphp\nn[::1]:8000\n");
    answer("details 9,20", " 9 5 01:00 0.0 100 node server.js\n20 10 00:30 7.0 700 php -S 127.0.0.1:8000\n");
    answer("details 5,10", " 5 1 02:00 0.0 50 -zsh\n10 5 01:30 1.0 200 php artisan serve\n");
    answer("folders", "p9\nn/Users/me/shop\np20\nn/Users/me/blog/public\np10\nn/Users/me/blog\n");
    answer("services", "PID\tStatus\tLabel\n9\t0\tcom.example.agent\n");
    answer("table", "1 0 /sbin/launchd\n4 1 /Applications/Terminal.app/Contents/MacOS/Terminal\n5 4 -zsh\n"
                    "10 5 /opt/php\n9 5 /opt/node\n20 10 /opt/php\n");
    answer("details 9", " 9 5 01:00 0.0 100 node server.js\n");
    const Instant before = m_machine.now();
    const auto ports = scanListeningPorts(m_machine);
    const Instant after = m_machine.now();

    EXPECT_THAT(calls(), ElementsAre(listingCall, detailsCall("9,20"), detailsCall("5,10"),
                                     foldersCall("9,20,10"), "launchctl[list]", tableCall, detailsCall("9")));
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].service, "com.example.agent");
    EXPECT_EQ(ports[0].hostApp, std::nullopt);
    EXPECT_EQ(ports[1].pid, 10);
    EXPECT_EQ(ports[1].workerPID, 20);
    EXPECT_EQ(ports[1].cwd, "/Users/me/blog");
    EXPECT_EQ(ports[1].cpu, 7.0);
    EXPECT_EQ(ports[1].hostApp, "/Applications/Terminal.app");
    ASSERT_TRUE(ports[1].startedAt);
    EXPECT_GE(*ports[1].startedAt, before - 90s);
    EXPECT_LE(*ports[1].startedAt, after - 90s);
}

TEST_F(StockToolsMachineTest, aServerUnderOurOwnBundleHasNoHost) {
    answer("listing", "p20\ncphp\nn127.0.0.1:8000\n");
    answer("table", "20 10 /opt/php\n10 1 /Applications/Tarnvale.app/Contents/MacOS/tarnvale\n");
    const auto ports = scanListeningPorts(m_machine);
    ASSERT_EQ(ports.size(), 1u);
    EXPECT_EQ(ports[0].hostApp, std::nullopt);
    EXPECT_THAT(calls(),
                ElementsAre(listingCall, detailsCall("20"), foldersCall("20"), "launchctl[list]", tableCall))
        << "without details there are no parents to ask for";
}

TEST_F(StockToolsMachineTest, missingToolsAnswerNothing) {
    const std::string none = m_folder.path("none");
    StockToolsMachine machine({.lsof = none, .ps = none, .launchctl = none, .ownBundle = ""});
    EXPECT_THAT(scanListeningPorts(machine), IsEmpty());
    StockToolsMachine half({.lsof = m_folder.path("lsof"), .ps = none, .launchctl = none, .ownBundle = ""});
    answer("listing", "p20\ncphp\nn127.0.0.1:8000\n");
    EXPECT_THAT(scanListeningPorts(half),
                ElementsAre(ListeningPort{.pid = 20, .command = "php", .port = 8000}));
}

TEST_F(StockToolsMachineTest, theTextOfAToolIsRepaired) {
    answer("listing", "p10\ncn\xFFode\nn*:3000\n");
    EXPECT_EQ(m_machine.listeningSockets().at(0).command, "n\uFFFDode");
}

TEST_F(StockToolsMachineTest, ourOwnApplicationIsOurBundle) {
    EXPECT_EQ(m_machine.ownApplication(), "/Applications/Tarnvale.app");
}

TEST(AppBundleTest, theOutermostBundleIsFound) {
    EXPECT_EQ(appBundle("/Applications/Terminal.app/Contents/MacOS/Terminal"), "/Applications/Terminal.app");
    EXPECT_EQ(appBundle("/Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/B"),
              "/Applications/A.app");
    EXPECT_EQ(appBundle("My App.app/x"), "My App.app");
}

TEST(AppBundleTest, otherPathsHaveNone) {
    for (const std::string_view path :
         {"", "/usr/bin/node", "/Applications/Terminal.app", "/opt/x.apple/y", "/opt/X.APP/y"})
        EXPECT_EQ(appBundle(path), std::nullopt) << path;
}

} // namespace
} // namespace tarnvale
