// A real project from its folder to its last session, in the window.

#include "presentation/shared/MomentaryKeys.h"
#include "real/ApplicationWindow.h"
#include "real/RealProcess.h"
#include "real/ScreenReader.h"
#include "real/servers.h"
#include "store/storedJson.h"
#include "support/ManualClock.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <filesystem>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t pageColour = 0x3366CC;
constexpr const char *publicAddress = "https://deft-words-here.trycloudflare.com";

class ApplicationProjectTest : public ApplicationWindow {
protected:
    void SetUp() override {
        ApplicationWindow::SetUp();
        if (IsSkipped())
            return;
        TARNVALE_NEEDS_PROGRAM(node, "node");
        TARNVALE_NEEDS_PROGRAM(npm, "npm");
        desktop.folder.write("home/.npmrc", "update-notifier=false\nfund=false\naudit=false\n");
        parent.write("shop/package.json", "{\"name\": \"shop\", \"version\": \"1.0.0\", \"scripts\": "
                                          "{\"dev\": \"node server.js " +
                                              port.text() + "\"}}\n");
        parent.write(
            "shop/server.js",
            "const page = `<body style='background: #3366cc'><title>Shop</title>`;\n"
            "require('http').createServer((request, response) => {\n"
            "    console.log('asked for', request.url);\n"
            "    response.writeHead(request.url === '/up' ? 204 : 200, {'content-type': 'text/html'});\n"
            "    response.end(request.url === '/up' ? undefined : page);\n"
            "}).listen(Number(process.argv[2]), '127.0.0.1', () => console.log('the shop is open'));\n");
    }

    void TearDown() override {
        for (const ListeningPort &record : scanPort(port.number()))
            killMarked(record.pid, port.text());
    }

    [[nodiscard]] std::unique_ptr<RealProcess> startServer() const {
        const std::vector<std::string> words{findProgram("node").value_or(""), "server.js", port.text()};
        return std::make_unique<RealProcess>(words, ProcessSetup{.folder = project()});
    }

    [[nodiscard]] std::string project() const { return parent.path("shop"); }

    [[nodiscard]] std::optional<Stack> storedStack() const {
        const auto stacks = decodeStacks(settings().bytes("stacks").value_or(""));
        return stacks && stacks->size() == 1 ? std::optional(stacks->front()) : std::nullopt;
    }

    /// The one process that listens on the port.
    [[nodiscard]] Pid pid() const {
        const auto found = scanPort(port.number());
        return found.size() == 1 ? found.front().pid : -1;
    }

    /// Goes to the port's row on the page of all ports and selects it.
    [[nodiscard]] bool selectRow() {
        if (!goTo("All Ports") ||
            !desktop.shows([this](const AccessibleTree &tree) { return tree.row(port.number()) != nullptr; }))
            return false;
        const std::string name = desktop.tree().row(port.number())->name;
        return choose("list item", name.substr(name.find("port " + port.text()))) &&
               sees("label", "Port: " + port.text());
    }

    [[nodiscard]] bool logHas(const std::string &words) {
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *const log = tree.present("text", "Logs");
            return log != nullptr && log->text.find(words) != std::string::npos;
        });
    }

    [[nodiscard]] bool rowSays(const std::string &words) {
        return desktop.shows([&](const AccessibleTree &tree) {
            const AccessibleNode *const row = tree.row(port.number());
            return row != nullptr && row->name.find(words) != std::string::npos;
        });
    }

    void saveStack();
    void startStack();
    void changeHealthPath();
    void restart();
    void seeLogs();
    void share();
    void stop();
    void readSession();

    TemporaryFolder parent;
    ReservedPort port;
};

void ApplicationProjectTest::saveStack() {
    ASSERT_TRUE(goTo("Stacks")) << state();
    ASSERT_TRUE(choose("push button", "New from Folder")) << state();
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        const AccessibleNode *const dialog = tree.shown("dialog", "Choose a project folder");
        return dialog != nullptr && dialog->is("active");
    })) << state();
    desktop.type(project());
    desktop.press({"Return"});
    ASSERT_TRUE(sees("dialog", "New Stack")) << state();
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        const AccessibleNode *const command = tree.shown("check box", "npm run dev");
        return command != nullptr && command->is("checked");
    })) << state();
    ASSERT_TRUE(choose("push button", "Create Stack")) << state();
    ASSERT_TRUE(sees("list item", "shop, ")) << state();
    const auto stack = storedStack();
    ASSERT_TRUE(stack);
    ASSERT_EQ(stack->commands.size(), 1U);
    EXPECT_EQ(stack->commands[0].cwd, project());
}

void ApplicationProjectTest::startStack() {
    ASSERT_TRUE(choose("push button", "Start")) << state();
    ASSERT_TRUE(awaitListeners(port.number())) << state();
}

void ApplicationProjectTest::changeHealthPath() {
    ASSERT_TRUE(rowSays("HTTP 200")) << state();
    ASSERT_TRUE(choose("text", "Health check path")) << state();
    desktop.press({"ctrl+a"});
    desktop.type("/up");
    desktop.press({"Return"});
    EXPECT_TRUE(rowSays("HTTP 204")) << state();
    EXPECT_EQ(settings().texts("healthPaths"), (std::map<std::string, std::string>{{port.text(), "/up"}}));
}

/// What npm has started is known by the words of node, so its output is nowhere until it is restarted.
void ApplicationProjectTest::restart() {
    const Pid before = pid();
    ASSERT_TRUE(choose("push button", "Restart to Capture Logs")) << state();
    ASSERT_TRUE(waitFor([&] { return pid() > 0 && pid() != before; }, std::chrono::seconds(20))) << state();
    EXPECT_FALSE(isAlive(before));
    ASSERT_TRUE(sees("heading", "No port selected")) << "another process is another row\n" << state();
    ASSERT_TRUE(selectRow()) << state();
    EXPECT_TRUE(sees("label", "PID: " + std::to_string(pid()))) << state();
    EXPECT_TRUE(rowSays("HTTP 204")) << "its path is kept\n" << state();
}

void ApplicationProjectTest::seeLogs() {
    ASSERT_TRUE(logHas("the shop is open")) << state();
    ASSERT_TRUE(httpGet(port.number(), "/seventh-heaven"));
    EXPECT_TRUE(logHas("asked for /seventh-heaven")) << "it streams\n" << state();
}

void ApplicationProjectTest::share() {
    ASSERT_TRUE(choose("push button", "Share via cloudflared")) << state();
    ASSERT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.present("label", publicAddress) != nullptr;
    })) << state();
    EXPECT_TRUE(rowSays("Shared publicly")) << state();
    EXPECT_THAT(readFile(desktop.folder.path("home") + "/shared"),
                HasSubstr("http://localhost:" + port.text()));
    ASSERT_TRUE(choose("push button", "Stop Sharing")) << state();
    EXPECT_TRUE(desktop.shows([](const AccessibleTree &tree) {
        return tree.present("label", publicAddress) == nullptr &&
               tree.present("push button", "Share via") != nullptr;
    })) << state();
}

/// Only where the second click came too late to count may both be made again.
void ApplicationProjectTest::stop() {
    const Pid server = pid();
    AccessibleNode armed;
    const auto isArmed = [&](const AccessibleTree &tree) {
        const AccessibleNode *const button = tree.present("push button", "Click again to confirm");
        if (button != nullptr)
            armed = *button;
        return button != nullptr;
    };
    constexpr int tries = 3;
    for (int i = 0; i < tries && isAlive(server); ++i) {
        ASSERT_TRUE(choose("push button", "Kill Process")) << state();
        const QDeadlineTimer surelyArmed(armedFor - std::chrono::seconds(1));
        ASSERT_TRUE(desktop.shows(isArmed)) << state();
        ASSERT_TRUE(isAlive(server)) << "one click stops nothing";
        desktop.click(armed);
        const bool counts = !surelyArmed.hasExpired();
        const bool hasEnded =
            waitFor([&] { return !isAlive(server); }, std::chrono::seconds(counts ? 30 : 5));
        ASSERT_TRUE(hasEnded || !counts) << state();
    }
    EXPECT_FALSE(isAlive(server)) << state();
    EXPECT_TRUE(desktop.shows([this](const AccessibleTree &tree) {
        return tree.row(port.number()) == nullptr;
    })) << state();
}

void ApplicationProjectTest::readSession() {
    ASSERT_TRUE(goTo("Activity")) << state();
    const auto isOver = [](const AccessibleNode &node) {
        return node.role == "list item" && node.name.find(" – ") != std::string::npos &&
               node.name.find("now") == std::string::npos;
    };
    EXPECT_TRUE(desktop.shows([&](const AccessibleTree &tree) {
        return tree.shown("list", "shop, ") != nullptr &&
               std::any_of(tree.nodes.begin(), tree.nodes.end(), isOver);
    })) << state();
}

TEST_F(ApplicationProjectTest, itLivesAWholeLife) {
    for (const char *other : {"/usr/bin/cloudflared", "/usr/local/bin/cloudflared",
                              "/opt/homebrew/bin/cloudflared", "/home/linuxbrew/.linuxbrew/bin/cloudflared"})
        if (std::filesystem::exists(other))
            GTEST_SKIP() << other << " would share with the internet";
    desktop.folder.writeScript("home/.local/bin/cloudflared", "echo \"$@\" >\"$HOME/shared\"\necho 'INF |  " +
                                                                  std::string(publicAddress) +
                                                                  "  |' >&2\nexec sleep 60\n");
    ASSERT_TRUE(startWithWindow()) << state();
    ASSERT_NO_FATAL_FAILURE(saveStack());
    ASSERT_NO_FATAL_FAILURE(startStack());
    ASSERT_TRUE(selectRow()) << state();
    ASSERT_NO_FATAL_FAILURE(changeHealthPath());
    ASSERT_NO_FATAL_FAILURE(restart());
    ASSERT_NO_FATAL_FAILURE(seeLogs());
    ASSERT_NO_FATAL_FAILURE(share());
    ASSERT_NO_FATAL_FAILURE(stop());
    readSession();
}

TEST_F(ApplicationProjectTest, aRunningOneIsSavedFromItsMenu) {
    const auto server = startServer();
    ASSERT_TRUE(awaitListeners(port.number()));
    ASSERT_TRUE(startWithWindow()) << state();
    ASSERT_TRUE(selectRow()) << state();
    ScreenReader reader(desktop);
    desktop.press({"Menu"});
    ASSERT_TRUE(reader.goTo("Save shop as Stack", "Up")) << reader.heard() << state();
    desktop.press({"Return"});
    ASSERT_TRUE(waitFor([this] { return storedStack().has_value(); })) << state();
    EXPECT_EQ(storedStack()->name, "shop");
    EXPECT_EQ(storedStack()->commands.front().cwd, project());
    ASSERT_TRUE(goTo("Stacks")) << state();
    EXPECT_TRUE(sees("push button", "Running")) << state();
}

TEST_F(ApplicationProjectTest, itsPageIsSeen) {
    if (!std::filesystem::exists(
            std::filesystem::path(TARNVALE_EXECUTABLE).replace_filename("tarnvale-preview")))
        GTEST_SKIP() << "the helper that draws pages isn't built";
    const auto server = startServer();
    ASSERT_TRUE(awaitListeners(port.number()));
    const bool isRoot = geteuid() == 0; // whom a browser's sandbox doesn't hold
    ASSERT_TRUE(startWithWindow({std::string("TARNVALE_PREVIEW_SANDBOX=") + (isRoot ? "off" : "on")}))
        << state();
    ASSERT_TRUE(selectRow()) << state();
    const std::string name = "Preview of localhost:" + port.text();
    AccessibleNode picture; // the one in the inspector is larger than the one in the row
    const auto hasPicture = [&](const AccessibleTree &tree) {
        for (const AccessibleNode &each : tree.nodes)
            if (each.name == name && each.is("showing") && each.width > picture.width)
                picture = each;
        return picture.width > 0;
    };
    ASSERT_TRUE(desktop.shows(hasPicture, std::chrono::seconds(40))) << state();
    const auto isItself = [&] {
        return desktop.pixel(picture.x + picture.width / 2, picture.y + picture.height * 3 / 4) == pageColour;
    };
    EXPECT_TRUE(waitFor(isItself)) << state();
}

} // namespace
} // namespace tarnvale
