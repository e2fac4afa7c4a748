#include "store/classifyFailure.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ClassifyFailureTest, conflictsAreToldByTheirWords) {
    struct Row {
        std::string log;
        std::optional<std::int64_t> port;
    };
    const std::vector<Row> rows{
        {"Error: listen EADDRINUSE: address already in use :::3000\n", 3000},
        {"listen tcp 127.0.0.1:8080: bind: address already in use", 8080},
        {"ERROR:    [Errno 98] Address already in use", std::nullopt},
        {"Error: Port 5173 — the port is already in use", 5173},
        {"Bind for 0.0.0.0:80 failed: port is already allocated", 80},
        {"Bind failed: port is already allocated", std::nullopt},
        {"PORT 4000: EADDRINUSE", 4000},
        {"at 10:45 EADDRINUSE on port 3000", 45}, // the first match in the line wins
        {"eaddrinuse :123456", std::nullopt},     // no port has six digits
        {"eaddrinuse :7", std::nullopt},
        {"eaddrinuse port 3000x", std::nullopt},
    };
    for (const Row &row : rows) {
        const LaunchFailure failure = classifyFailure(row.log);
        EXPECT_TRUE(failure.isConflict) << row.log;
        EXPECT_EQ(failure.port, row.port) << row.log;
    }
}

TEST(ClassifyFailureTest, theLatestConflictDecides) {
    EXPECT_EQ(classifyFailure("EADDRINUSE :::3000\nretrying\nEADDRINUSE :::3001\nbye\n"),
              (LaunchFailure{.isConflict = true, .port = 3001, .line = {}}));
}

TEST(ClassifyFailureTest, anythingElseIsItsLastLine) {
    struct Row {
        std::string log;
        std::string line;
    };
    const std::vector<Row> rows{
        {"", ""},
        {"\n\n  \t\n", ""},
        {"one\ntwo\n", "two"},
        {"one\n\t two \t\n   \n", "two"},
        {"one\r\ntwo\r\n", "two"},
        {"one\x0btwo\x0c", "two"},
        {"one\u2028two\u2029", "two"},
        {"one\u0085", "one"},
        {"zsh: command not found: npx", "zsh: command not found: npx"},
        {"the port is taken", "the port is taken"},
    };
    for (const Row &row : rows) {
        const LaunchFailure failure = classifyFailure(row.log);
        EXPECT_FALSE(failure.isConflict) << row.log;
        EXPECT_EQ(failure.line, row.line) << row.log;
    }
}

TEST(ClassifyFailureTest, oddBytesAreNoTrouble) {
    EXPECT_EQ(classifyFailure(std::string_view("\xff\xfe\0:3000 EADDRINUSE", 19)).port, 3000);
    EXPECT_EQ(classifyFailure(std::string(100'000, 'x')).line.size(), 100'000u);
}

} // namespace
} // namespace tarnvale
