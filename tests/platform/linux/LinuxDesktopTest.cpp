#include "platform/linux/LinuxDesktop.h"

#include "platform/background.h"
#include "platform/linux/PrivateBus.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>

namespace tarnvale {
namespace {

using testing::IsEmpty;

/// Writes down the calls to any object of its connection; answers with an error where it is told to.
class CallRecorder : public QDBusVirtualObject {
public:
    CallRecorder(const QDBusConnection &bus, const QString &name) : m_bus(bus) {
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_bus.registerService(name);
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        calls << message;
        return connection.send(refuses ? message.createErrorReply(QDBusError::Failed, QStringLiteral("no"))
                                       : message.createReply());
    }
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool refuses = false;
    QList<QDBusMessage> calls;

private:
    QDBusConnection m_bus;
};

const QDBusConnection noBus(QStringLiteral("none"));

/// With a desktop opener that writes down what it was asked to open, a line each time.
class LinuxDesktopTest : public testing::Test {
protected:
    LinuxDesktopTest() {
        m_folder.writeScript("bin/xdg-open", "for word in \"$@\"; do echo \"<$word>\"; done >>'" + m_opened +
                                                 "'\necho done >>'" + m_opened + "'");
        setenv("PATH", m_folder.path("bin").c_str(), 1);
    }
    ~LinuxDesktopTest() override { setenv("PATH", m_before.c_str(), 1); }

    [[nodiscard]] bool opens(const std::string &what) const {
        return waitFor([&] { return readFile(m_opened) == "<" + what + ">\ndone\n"; });
    }
    /// What was opened before this call.
    [[nodiscard]] std::string openedSoFar() const {
        const std::string last = "<x:last>\ndone\n";
        backgroundThreads().waitForDone();
        setenv("PATH", m_folder.path("bin").c_str(), 1);
        LinuxDesktop({noBus, "", "C"}).openUrl("x:last");
        EXPECT_TRUE(waitFor([&] { return readFile(m_opened).ends_with(last); }));
        const std::string all = readFile(m_opened);
        std::filesystem::remove(m_opened);
        return all.substr(0, all.size() - std::min(all.size(), last.size()));
    }

    TemporaryFolder m_folder;
    std::string m_opened = m_folder.path("opened");

private:
    std::string m_before = std::getenv("PATH");
};

TEST_F(LinuxDesktopTest, anAddressIsGivenToTheOpener) {
    LinuxDesktop desktop({noBus, "", "C"});
    desktop.openUrl("http://localhost:3000/a?b=c&d='e'");
    EXPECT_TRUE(opens("http://localhost:3000/a?b=c&d='e'")) << readFile(m_opened);
}

TEST_F(LinuxDesktopTest, whatIsNoAddressIsNotOpened) {
    LinuxDesktop desktop({noBus, "", "C"});
    for (const char *text : {"", "--help", "-x:y", "/etc/passwd", "localhost", "http//x", "\xff"})
        desktop.openUrl(text);
    EXPECT_EQ(openedSoFar(), "");
}

TEST_F(LinuxDesktopTest, withoutAnOpenerNothingHappens) {
    setenv("PATH", "/nowhere", 1);
    LinuxDesktop desktop({noBus, "", "C"});
    desktop.openUrl("http://localhost:3000");
    desktop.reveal(m_folder.path());
    settle();
    EXPECT_EQ(openedSoFar(), "");
}

TEST_F(LinuxDesktopTest, onlyRegularFilesAreLogs) {
    LinuxDesktop desktop({noBus, "", "C"});
    const std::string fifo = m_folder.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string &path : {m_folder.path(), fifo, m_folder.path("none"), std::string("relative"),
                                    std::string(), std::string("--version")})
        desktop.openLog(path);
    EXPECT_EQ(openedSoFar(), "");
    const std::string log = m_folder.write("logs/my shop.log", "ready\n");
    desktop.openLog(log);
    EXPECT_TRUE(opens(log)) << readFile(m_opened);
}

TEST_F(LinuxDesktopTest, theFileManagerIsAskedFirst) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "dbus-daemon isn't installed";
    CallRecorder manager(bus.connect(), "org.freedesktop.FileManager1");
    LinuxDesktop desktop({bus.connect(), "", "C"});
    desktop.reveal("/home/me/my sh\u00f6p #1%");
    ASSERT_TRUE(waitFor([&] { return manager.calls.size() == 1; }));
    const QDBusMessage call = manager.calls.first();
    EXPECT_EQ(call.path(), QStringLiteral("/org/freedesktop/FileManager1"));
    EXPECT_EQ(call.member(), QStringLiteral("ShowItems"));
    EXPECT_EQ(call.arguments().value(0).toStringList(),
              QStringList("file:///home/me/my%20sh%C3%B6p%20%231%25"));
    bus.settle();
    EXPECT_EQ(openedSoFar(), "");

    manager.refuses = true;
    desktop.reveal(m_folder.path());
    EXPECT_TRUE(opens(m_folder.path())) << "a refusal leads to the folder itself";
}

TEST_F(LinuxDesktopTest, withoutAFileManagerTheFolderIsOpened) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "dbus-daemon isn't installed";
    LinuxDesktop desktop({bus.connect(), "", "C"});
    desktop.reveal(m_folder.write("shop/package.json", "{}"));
    EXPECT_TRUE(opens(m_folder.path("shop"))) << "the folder that holds the file";
}

TEST_F(LinuxDesktopTest, aFolderThatIsNotThereIsNotOpened) {
    LinuxDesktop desktop({noBus, "", "C"});
    for (const std::string &path : {m_folder.path("a/b"), std::string("relative"), std::string()})
        desktop.reveal(path);
    settle();
    EXPECT_EQ(openedSoFar(), "");
}

TEST_F(LinuxDesktopTest, anApplicationOnTheBusIsActivated) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "dbus-daemon isn't installed";
    CallRecorder application(bus.connect(), "org.example.My-Editor");
    LinuxDesktop desktop({bus.connect(), ":59999", "C"});
    EXPECT_TRUE(desktop.focusApplication("/usr/share/applications/org.example.My-Editor.desktop", 1));
    ASSERT_TRUE(waitFor([&] { return application.calls.size() == 1; }));
    const QDBusMessage call = application.calls.first();
    EXPECT_EQ(call.path(), QStringLiteral("/org/example/My_Editor"));
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.Application"));
    EXPECT_EQ(call.member(), QStringLiteral("Activate"));
    EXPECT_EQ(call.signature(), QStringLiteral("a{sv}"));
}

TEST_F(LinuxDesktopTest, anApplicationThatDoesNotRunCannotBeFocused) {
    PrivateBus bus;
    if (!bus.isRunning())
        GTEST_SKIP() << "dbus-daemon isn't installed";
    CallRecorder application(bus.connect(), "org.example.Editor");
    for (const QDBusConnection &connection : {bus.connect(), noBus}) {
        LinuxDesktop desktop({connection, ":59999", "C"});
        for (const char *hostApp :
             {"/usr/share/applications/org.example.Other.desktop", "/usr/share/applications/code.desktop",
              "/usr/share/applications/org.example.Editor", "/Applications/Editor.app", "", "/",
              "/x/..desktop", "/x/org..x.desktop", "/x/org.ex ample.desktop", "/x/org.1x.desktop",
              "/x/org.x\n.desktop", "/x/:1.5.desktop"})
            EXPECT_FALSE(desktop.focusApplication(hostApp, 1)) << hostApp;
    }
    bus.settle();
    EXPECT_THAT(application.calls, IsEmpty());
}

TEST_F(LinuxDesktopTest, anApplicationHasItsNameInTheUsersLanguage) {
    const std::string file =
        m_folder.write("org.example.Files.desktop",
                       "[Desktop Entry]\nType=Application\nName=Files\nName[de]=Dateien\nExec=files\n");
    EXPECT_EQ(LinuxDesktop({noBus, "", "de_AT.UTF-8"}).applicationName(file), "Dateien");
    EXPECT_EQ(LinuxDesktop({noBus, "", "C"}).applicationName(file), "Files");
}

TEST_F(LinuxDesktopTest, withoutANameTheFileHasOne) {
    struct Row {
        std::string hostApp;
        const char *name;
        const char *reason;
    };
    const Row rows[]{
        {m_folder.path("Editor.desktop"), "Editor", "no such file"},
        {m_folder.write("my.editor.desktop", "[Desktop Entry]\nExec=e\n"), "my.editor", "no name in it"},
        {m_folder.write("empty.desktop", ""), "empty", "an empty file"},
        {"/Applications/Visual Editor.app", "Visual Editor", "another system's application"},
        {m_folder.write("a.conf", "[Desktop Entry]\nName=Wrong\n"), "a", "no desktop file"},
        {m_folder.path(), nullptr, "a folder"},
        {"/opt/tool", "tool", "no extension"},
        {"/opt/.hidden", ".hidden", "nothing before the dot"},
        {"", "", "nothing"},
    };
    const LinuxDesktop desktop({noBus, "", "C"});
    for (const Row &row : rows) {
        const std::string expected =
            row.name != nullptr ? row.name : std::filesystem::path(m_folder.path()).filename().string();
        EXPECT_EQ(desktop.applicationName(row.hostApp), expected) << row.reason;
    }
}

TEST_F(LinuxDesktopTest, aNameThatComesLaterIsSeen) {
    const LinuxDesktop desktop({noBus, "", "C"});
    const std::string path = m_folder.path("editor.desktop");
    EXPECT_EQ(desktop.applicationName(path), "editor");
    m_folder.write("editor.desktop", "[Desktop Entry]\nName=My Editor\n");
    EXPECT_EQ(desktop.applicationName(path), "My Editor");
    std::filesystem::remove(path);
    EXPECT_EQ(desktop.applicationName(path), "My Editor") << "known names are kept";
}

} // namespace
} // namespace tarnvale
