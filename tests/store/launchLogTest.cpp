#include "store/launchLog.h"

#include "discovery/text.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tarnvale {
namespace {

std::string nameOf(const std::string &args, const std::string &cwd = "/home/me/shop") {
    const std::string path = launchLogURL("/logs", args, cwd);
    EXPECT_EQ(path.substr(0, 6), "/logs/");
    return path.substr(6);
}

TEST(LaunchLogTest, theNameTellsFolderAndCommand) {
    struct Row {
        std::string args;
        std::string name;
    };
    const std::vector<Row> rows{
        {"npm run dev", "shop-npm-run-dev.log"},
        {"node server.js --port=3000", "shop-node-server-js-port-3000.log"},
        {"npm  run...dev!", "shop-npm-run-dev.log"},
        {"!!!", "shop-.log"},
        {"", "shop-.log"},
        {"../../etc/passwd", "shop-etc-passwd.log"},
        {"größe ٣ 東京", "shop-größe-٣-東京.log"},
        {"cafe\u0301 x", "shop-cafe\u0301-x.log"}, // an accent of its own belongs to its letter
        {"a\xf0\x9f\x9a\x80z", "shop-a-z.log"},    // no letter
        {std::string(100, 'a') + "b", "shop-" + std::string(59, 'a') + "b.log"},
        {"x" + std::string(60, ' ') + "y", "shop-x-y.log"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(nameOf(row.args), row.name) << row.args;
}

TEST(LaunchLogTest, theFolderIsTheLastOfItsPath) {
    EXPECT_EQ(nameOf("a", "/home/me/shop/"), "shop-a.log");
    EXPECT_EQ(nameOf("a", "/"), "-a.log");
    EXPECT_EQ(nameOf("a", ""), "-a.log");
}

TEST(LaunchLogTest, noNameIsTooLongForAFile) {
    const std::string longFolder = "/home/me/" + std::string(255, 'f');
    EXPECT_LE(nameOf("npm run dev", longFolder).size(), 255u);
    EXPECT_TRUE(nameOf("npm run dev", longFolder).ends_with("-npm-run-dev.log"));
    std::string wide;
    for (int i = 0; i < 60; ++i)
        wide += "\u20ac\u0301\u0301é\u0301\u0301\u0301";
    const std::string name = nameOf(wide, longFolder);
    EXPECT_LE(name.size(), 255u);
    EXPECT_EQ(repairedUtf8(name), name);
    std::string euros;
    for (int i = 0; i < 85; ++i)
        euros += "€";
    EXPECT_EQ(repairedUtf8(nameOf("x", "/home/" + euros)), nameOf("x", "/home/" + euros));
}

TEST(ReadLogTailTest, theEndOfALogIsRead) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.log", "0123456789");
    EXPECT_EQ(readLogTail(path, 4), "6789");
    EXPECT_EQ(readLogTail(path, 10), "0123456789");
    EXPECT_EQ(readLogTail(path, 8192), "0123456789");
    EXPECT_EQ(readLogTail(folder.write("empty.log", ""), 8192), "");
}

TEST(ReadLogTailTest, aCutCharacterIsRepaired) {
    const TemporaryFolder folder;
    EXPECT_EQ(readLogTail(folder.write("a.log", "x€y"), 3), "\ufffd\ufffdy");
}

TEST(ReadLogTailTest, whatIsNoPlainFileIsEmpty) {
    const TemporaryFolder folder;
    EXPECT_EQ(readLogTail(folder.path("missing.log"), 8192), "");
    EXPECT_EQ(readLogTail(folder.path(), 8192), "");
    EXPECT_EQ(readLogTail("/dev/zero", 8192), "");
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(readLogTail(pipe, 8192), "");
}

} // namespace
} // namespace tarnvale
