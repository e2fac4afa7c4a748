// The program as the session bus starts it, for a search.

#include "real/RealProcess.h"
#include "real/applicationTest.h"
#include "real/servers.h"
#include "support/ManualClock.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace tarnvale {
namespace {

const QString service = QStringLiteral("dev.tarnvale.Tarnvale");

class ApplicationServiceModeTest : public ApplicationTest {
protected:
    void SetUp() override {
        ApplicationTest::SetUp();
        if (IsSkipped())
            return;
        const std::string python = findProgram("python3").value_or("");
        if (python.empty())
            GTEST_SKIP() << "python3 is not installed";
        server = std::make_unique<RealProcess>(
            std::vector<std::string>{python, "-m", "http.server", "--bind", "127.0.0.1", port.text()});
        ASSERT_TRUE(awaitListeners(port.number()));
        application =
            std::make_unique<RealApplication>(desktop, std::vector<std::string>{"--gapplication-service"});
        ASSERT_TRUE(waitFor([&] { return connection.interface()->isServiceRegistered(service); },
                            std::chrono::seconds(30)))
            << state();
    }

    [[nodiscard]] QDBusMessage call(const QString &object, const QString &interface, const QString &member,
                                    const QVariantList &arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            service, QStringLiteral("/dev/tarnvale/Tarnvale") + object, interface, member);
        message.setArguments(arguments);
        return connection.call(message);
    }

    [[nodiscard]] QString result() const {
        return QStringLiteral("open:%1:%2").arg(port.number()).arg(server->pid());
    }

    QDBusConnection connection = desktop.bus.connect();
    ReservedPort port;
    std::unique_ptr<RealProcess> server;
};

TEST_F(ApplicationServiceModeTest, theSearchThatStartsItFindsWhatRuns) {
    const QDBusMessage found =
        call(QStringLiteral("/SearchProvider"), QStringLiteral("org.gnome.Shell.SearchProvider2"),
             QStringLiteral("GetInitialResultSet"), {QStringList{QString::number(port.number())}});
    EXPECT_EQ(found.arguments().value(0).toStringList(), QStringList{result()})
        << found.errorMessage().toStdString();
}

TEST_F(ApplicationServiceModeTest, theRunnerThatStartsItFindsWhatRuns) {
    const QDBusMessage found = call(QStringLiteral("/Runner"), QStringLiteral("org.kde.krunner1"),
                                    QStringLiteral("Match"), {QString::number(port.number())});
    ASSERT_EQ(found.signature(), QStringLiteral("a(sssida{sv})")) << found.errorMessage().toStdString();
    const auto matches = found.arguments().value(0).value<QDBusArgument>();
    QString id;
    matches.beginArray();
    ASSERT_FALSE(matches.atEnd());
    matches.beginStructure();
    matches >> id;
    matches.endStructure();
    matches.endArray();
    EXPECT_EQ(id, result());
}

TEST_F(ApplicationServiceModeTest, whoStartsItThenGetsTheApplication) {
    EXPECT_TRUE(desktop.isPanelClosed());
    ASSERT_TRUE(togglePanel());
    EXPECT_TRUE(desktop.isPanelOpen()) << state();
}

} // namespace
} // namespace tarnvale
