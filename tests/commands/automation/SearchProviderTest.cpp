#include "commands/automation/AutomationBusTest.h"

#include <QDBusArgument>

#include <csignal>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Signal = FakeProcessControl::Signal;

class SearchProviderTest : public AutomationBusTest {
protected:
    SearchProviderTest() {
        path = applicationPath + "/SearchProvider";
        interface = "org.gnome.Shell.SearchProvider2";
    }

    [[nodiscard]] QStringList search(const QStringList &terms) {
        return call("GetInitialResultSet", {terms}).arguments().value(0).toStringList();
    }

    [[nodiscard]] QList<QVariantMap> metas(const QStringList &ids) {
        return qdbus_cast<QList<QVariantMap>>(call("GetResultMetas", {ids}).arguments().value(0));
    }

    [[nodiscard]] std::string activate(const QString &id) {
        return errorOf("ActivateResult", {id, QStringList{"3000"}, QVariant::fromValue(0u)});
    }
};

TEST_F(SearchProviderTest, theLastScanIsSearchedWithoutANewOne) {
    startApplication();
    const auto questions = world.machine.questions().size();
    const auto pending = send("GetInitialResultSet", {QStringList{"3000"}});
    ASSERT_TRUE(waitFor([&] { return pending.isFinished(); })) << "without a step of the clock";
    EXPECT_EQ(world.machine.questions().size(), questions);
    EXPECT_EQ(pending.reply().arguments().value(0).toStringList(), QStringList{"open:3000:42"});
}

TEST_F(SearchProviderTest, freeingIsFoundOnlyByWhoAsksForIt) {
    startApplication();
    EXPECT_EQ(search({"shop"}), QStringList{"open:3000:42"});
    EXPECT_EQ(search({"free", "shop"}), QStringList({"open:3000:42", "free:3000:42"}));
    EXPECT_EQ(search({"nothing"}), QStringList());
}

TEST_F(SearchProviderTest, aNarrowerSearchStartsFromTheTerms) {
    startApplication();
    const QVariantList arguments{QStringList{"open:1:1", "nonsense"}, QStringList{"blog"}};
    EXPECT_EQ(call("GetSubsearchResultSet", arguments).arguments().value(0).toStringList(),
              QStringList{"open:5173:43"});
}

TEST_F(SearchProviderTest, duringTheStartThereAreNoResults) {
    EXPECT_EQ(search({"3000"}), QStringList());
    EXPECT_TRUE(metas({"open:3000:42"}).isEmpty());
    EXPECT_EQ(call("GetInitialResultSet", {QStringList{"3000"}}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(SearchProviderTest, resultsAreDescribed) {
    startApplication();
    const auto found = metas({"open:3000:42", "free:3000:42"});
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].value("id"), "open:3000:42");
    EXPECT_EQ(found[0].value("name"), "3000 · shop");
    EXPECT_EQ(found[0].value("description"), "http://localhost:3000");
    EXPECT_EQ(found[0].value("gicon"), "dev.tarnvale.Tarnvale");
    EXPECT_EQ(found[1].value("id"), "free:3000:42");
    EXPECT_EQ(found[1].value("name"), "Free port 3000");
    EXPECT_EQ(found[1].value("description"), "Stop shop (PID 42)");
}

TEST_F(SearchProviderTest, resultsThatAreGoneAreNotDescribed) {
    startApplication();
    EXPECT_TRUE(metas({"open:3000:41", "open:4000:42", "nonsense", ""}).isEmpty());
    QStringList many;
    for (int i = 0; i < 1000; ++i)
        many << "open:3000:42";
    EXPECT_EQ(metas(many).size(), 10);
}

TEST_F(SearchProviderTest, aResultOpensItsPort) {
    startApplication();
    EXPECT_EQ(activate("open:3000:42"), "");
    EXPECT_THAT(world.desktop.opened, ElementsAre("http://localhost:3000"));
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(SearchProviderTest, onlyAResultThatSaysSoFrees) {
    startApplication();
    EXPECT_EQ(activate("free:3000:42"), "");
    pass(std::chrono::seconds(1));
    EXPECT_THAT(world.processes.sent, ElementsAre(Signal{42, SIGTERM}));
    EXPECT_THAT(done, ElementsAre("tell Stopped shop on port 3000."));
}

TEST_F(SearchProviderTest, aResultOfAnotherProcessFreesNothing) {
    startApplication();
    world.machine.end(42);
    addServer(52, 3000, "node other.js");
    EXPECT_EQ(activate("free:3000:42"), "");
    pass(std::chrono::seconds(1));
    EXPECT_THAT(world.processes.sent, IsEmpty());
    EXPECT_THAT(done, ElementsAre("tell Port 3000 is still in use."));
}

TEST_F(SearchProviderTest, whatIsNoResultIsRefused) {
    startApplication();
    for (const QString id : {"", "3000", "free:3000", "free:0:42", "free:3000:-1", "kill:3000:42"})
        EXPECT_EQ(activate(id), invalidArgs) << id.toStdString();
    EXPECT_EQ(errorOf("GetInitialResultSet", {"3000"}), unknownMethod);
    EXPECT_EQ(errorOf("GetResultMetas"), unknownMethod);
    EXPECT_EQ(errorOf("ActivateResult", {"open:3000:42"}), unknownMethod);
    EXPECT_THAT(world.desktop.opened, IsEmpty());
    EXPECT_THAT(world.processes.sent, IsEmpty());
}

TEST_F(SearchProviderTest, whoWantsMoreGetsTheApplication) {
    startApplication();
    EXPECT_EQ(errorOf("LaunchSearch", {QStringList{"shop"}, QVariant::fromValue(0u)}), "");
    EXPECT_THAT(done, ElementsAre("activate "));
}

} // namespace
} // namespace tarnvale
