#include "commands/automation/LocalInstance.h"

#include "commands/automation/Automation.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

#include <QFile>
#include <QLocalSocket>

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class LocalInstanceTest : public testing::Test {
protected:
    LocalInstanceTest() {
        automation.application().start(
            {.activate = [this](const QString &token) { asked.push_back(token.toStdString()); }});
    }

    /// All that a client hears that writes `bytes`.
    [[nodiscard]] QByteArray answerTo(const QByteArray &bytes) const {
        QLocalSocket client;
        client.connectToServer(QString::fromStdString(folder.path("tarnvale.socket")));
        if (!client.waitForConnected())
            return "unconnected";
        client.write(bytes);
        EXPECT_TRUE(waitFor([&] { return client.state() == QLocalSocket::UnconnectedState; }));
        return client.bytesAvailable() > 0 ? client.readAll() : QByteArray();
    }

    FakePlatform world;
    TemporaryFolder folder;
    Automation automation{world.desktop, QDBusConnection("none")};
    LocalInstance instance{automation.application(), QString::fromStdString(folder.path())};
    std::vector<std::string> asked;
};

TEST_F(LocalInstanceTest, theFirstAnswersRequests) {
    ASSERT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
    EXPECT_EQ(answerTo(requestLine({.action = {}, .parameters = {}, .activationToken = "abc"})), "done\n");
    EXPECT_THAT(asked, ElementsAre("abc"));
    EXPECT_EQ(answerTo(requestLine({.action = "explode", .parameters = {}, .activationToken = {}})),
              "There is no action \"explode\".\n");
}

TEST_F(LocalInstanceTest, whatIsNoRequestIsHungUpOn) {
    ASSERT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
    EXPECT_EQ(answerTo("\n"), "");
    EXPECT_EQ(answerTo("GET / HTTP/1.0\r\n\r\n"), "");
    EXPECT_EQ(answerTo(QByteArray(100000, 'x')), "");
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_EQ(answerTo(requestLine({})), "done\n") << "and the next is served";
}

TEST_F(LocalInstanceTest, onlyTheFirstRequestOfAConnectionCounts) {
    ASSERT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
    EXPECT_EQ(answerTo(requestLine({}) + requestLine({}) + requestLine({})), "done\n");
    EXPECT_EQ(asked.size(), 1u);
}

TEST_F(LocalInstanceTest, tooManyConnectionsAreHungUpOn) {
    ASSERT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
    std::vector<std::unique_ptr<QLocalSocket>> clients;
    for (int i = 0; i < LocalInstance::mostConnections; ++i) {
        clients.push_back(std::make_unique<QLocalSocket>());
        clients.back()->connectToServer(QString::fromStdString(folder.path("tarnvale.socket")));
        ASSERT_TRUE(clients.back()->waitForConnected());
        settle();
    }
    EXPECT_EQ(answerTo(requestLine({})), "");
    clients.clear();
    ASSERT_TRUE(waitFor([this] { return answerTo(requestLine({})) == "done\n"; }))
        << "once the others have gone";
}

TEST_F(LocalInstanceTest, theLockIsGivenBack) {
    {
        LocalInstance other(automation.application(), QString::fromStdString(folder.path()));
        ASSERT_EQ(other.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
        EXPECT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::answered) << "nothing was asked";
    }
    EXPECT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
}

TEST_F(LocalInstanceTest, aSocketThatACrashLeftIsReplaced) {
    folder.write("tarnvale.socket", "left behind");
    ASSERT_EQ(instance.claim(std::nullopt, 0ms).kind, Claim::Kind::taken);
    EXPECT_EQ(answerTo(requestLine({})), "done\n");
}

TEST_F(LocalInstanceTest, withoutItsFolderThereAreNoMeans) {
    LocalInstance lost(automation.application(), QString::fromStdString(folder.path("missing")));
    EXPECT_EQ(lost.claim(std::nullopt, 0ms).kind, Claim::Kind::unavailable);
}

class InstanceFolderTest : public testing::Test {
protected:
    InstanceFolderTest() : m_before(qgetenv("XDG_RUNTIME_DIR")) { qunsetenv("XDG_RUNTIME_DIR"); }
    ~InstanceFolderTest() override {
        if (!m_before.isNull())
            qputenv("XDG_RUNTIME_DIR", m_before);
    }

    [[nodiscard]] std::optional<QString> find() const {
        return instanceFolder(QString::fromStdString(folder.path("tmp")));
    }

    [[nodiscard]] std::string ours() const {
        return folder.path("tmp/tarnvale-" + std::to_string(geteuid()));
    }

    TemporaryFolder folder;

private:
    QByteArray m_before;
};

TEST_F(InstanceFolderTest, theRunTimeFolderIsUsedWhenItIsOnlyOurs) {
    std::filesystem::create_directories(folder.path("tmp"));
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(folder.path()));
    ASSERT_EQ(chmod(folder.path().c_str(), 0700), 0);
    EXPECT_EQ(find(), QString::fromStdString(folder.path()));
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    EXPECT_EQ(find(), QString::fromStdString(ours()));
    qputenv("XDG_RUNTIME_DIR", "relative");
    EXPECT_EQ(find(), QString::fromStdString(ours()));
}

TEST_F(InstanceFolderTest, anotherIsMadeForTheUserAlone) {
    std::filesystem::create_directories(folder.path("tmp"));
    EXPECT_EQ(find(), QString::fromStdString(ours()));
    struct stat status {};
    ASSERT_EQ(stat(ours().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
    EXPECT_EQ(find(), QString::fromStdString(ours())) << "and used again";
}

TEST_F(InstanceFolderTest, whatOthersPutThereIsNotUsed) {
    std::filesystem::create_directories(folder.path("elsewhere"));
    std::filesystem::create_directories(folder.path("tmp"));
    ASSERT_EQ(chmod(folder.path("elsewhere").c_str(), 0700), 0);
    std::filesystem::create_symlink(folder.path("elsewhere"), ours());
    EXPECT_EQ(find(), std::nullopt) << "a link";
    std::filesystem::remove(ours());
    std::filesystem::create_directory(ours());
    ASSERT_EQ(chmod(ours().c_str(), 0777), 0);
    EXPECT_EQ(find(), std::nullopt) << "open to all";
    std::filesystem::remove(ours());
    folder.write("tmp/tarnvale-" + std::to_string(geteuid()), "");
    EXPECT_EQ(find(), std::nullopt) << "a file";
}

} // namespace
} // namespace tarnvale
