#pragma once

#include "commands/automation/Automation.h"
#include "commands/automation/applicationId.h"
#include "platform/linux/PrivateBus.h"
#include "store/StoreTest.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <gmock/gmock.h>

namespace tarnvale {

/// The application's objects on a bus of their own, before its start, and a client on it.
class AutomationBusTest : public StoreTest {
protected:
    void SetUp() override {
        if (!bus.isRunning())
            GTEST_SKIP() << "there is no dbus-daemon";
        server = std::make_unique<QDBusConnection>(bus.connect());
        client = std::make_unique<QDBusConnection>(bus.connect());
        automation = std::make_unique<Automation>(world.desktop, *server);
        automation->setScan([this] { return scanListeningPorts(world.machine); });
    }

    void TearDown() override { automation.reset(); }

    /// The application has started, on a machine with "shop" on 3000 and "blog" on 5173.
    void startApplication() {
        addServer(42, 3000);
        addServer(43, 5173, "vite", "/home/me/blog");
        start();
        automation->start(*store, actions());
    }

    [[nodiscard]] ApplicationActions actions() {
        const auto note = [this](const std::string &word) {
            return [this, word](const QString &token) { done.push_back(word + " " + token.toStdString()); };
        };
        return {.activate = note("activate"),
                .togglePanel = note("toggle"),
                .showWindow = note("window"),
                .tell = note("tell"),
                .quit = [this] { done.emplace_back("quit"); }};
    }

    [[nodiscard]] QDBusPendingCall send(const QString &member, const QVariantList &arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(server->baseService(), path, interface, member);
        message.setArguments(arguments);
        return client->asyncCall(message);
    }

    /// Lets time pass until the answer is there.
    [[nodiscard]] QDBusMessage answerTo(const QDBusPendingCall &call) {
        EXPECT_TRUE(waitFor([&] {
            pass(std::chrono::milliseconds(50));
            return call.isFinished();
        })) << "no answer";
        return call.reply();
    }

    [[nodiscard]] QDBusMessage call(const QString &member, const QVariantList &arguments = {}) {
        return answerTo(send(member, arguments));
    }

    /// The name of the error that a call is answered with; empty for none.
    [[nodiscard]] std::string errorOf(const QString &member, const QVariantList &arguments = {}) {
        return call(member, arguments).errorName().toStdString();
    }

    QString path = applicationPath;
    QString interface;
    PrivateBus bus;
    std::unique_ptr<QDBusConnection> server;
    std::unique_ptr<QDBusConnection> client;
    std::unique_ptr<Automation> automation;
    std::vector<std::string> done; ///< what the application was asked to do

    const std::string invalidArgs = "org.freedesktop.DBus.Error.InvalidArgs";
    const std::string unknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";
    const std::string limitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";
};

} // namespace tarnvale
