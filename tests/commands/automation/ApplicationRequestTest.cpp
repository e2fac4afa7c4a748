#include "commands/automation/ApplicationRequest.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ApplicationRequest, theTokenIsFoundInThePlatformData) {
    const QString token = "activation-token";
    const QString startup = "desktop-startup-id";
    struct Row {
        QVariantMap data;
        QString expected;
        std::string reason;
    };
    const std::vector<Row> rows{
        {{}, "", "none"},
        {{{token, "abc-1"}}, "abc-1", "the token"},
        {{{startup, "host_TIME1"}}, "host_TIME1", "the older one"},
        {{{token, "abc"}, {startup, "host"}}, "abc", "the newer one counts"},
        {{{token, ""}, {startup, "host"}}, "host", "unless it is empty"},
        {{{token, "a\nb"}, {startup, "host"}}, "host", "or holds a control character"},
        {{{token, "bäh"}}, "", "beyond ASCII"},
        {{{token, QString("a").append(QChar(0))}}, "", "a NUL"},
        {{{token, QString(512, 'x')}}, QString(512, 'x'), "as long as may be"},
        {{{token, QString(513, 'x')}}, "", "too long"},
        {{{token, QVariantList{1, 2}}}, "", "another type"},
        {{{"other", "abc"}}, "", "another key"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(activationTokenIn(row.data), row.expected) << row.reason;
}

TEST(ApplicationRequest, aTokenIsHandedOnUnderBothNames) {
    EXPECT_TRUE(platformDataWith({}).isEmpty());
    EXPECT_EQ(activationTokenIn(platformDataWith("abc")), "abc");
    EXPECT_EQ(platformDataWith("abc").size(), 2);
}

TEST(ApplicationRequest, aLineIsReadBack) {
    const ApplicationRequest plain;
    const ApplicationRequest full{.action = "toggle-panel", .parameters = {}, .activationToken = "a \"b\""};
    for (const ApplicationRequest &request : {plain, full}) {
        const QByteArray line = requestLine(request);
        EXPECT_EQ(line.count('\n'), 1);
        EXPECT_EQ(parseRequestLine(line), request);
        for (qsizetype length = 0; length < line.size(); ++length)
            EXPECT_EQ(parseRequestLine(line.first(length)), std::nullopt) << "cut at " << length;
    }
}

TEST(ApplicationRequest, otherLinesAreNoRequests) {
    for (const QByteArray &line :
         {QByteArray("\n"), QByteArray("hello\n"), QByteArray("[]\n"), QByteArray("{}\n"),
          QByteArray("{\"action\":\"\"}\n"), QByteArray("{\"action\":1,\"activation-token\":\"\"}\n"),
          QByteArray("{\"action\":\"\",\"activation-token\":[]}\n"),
          QByteArray("{\"action\":\"\",\"activation-token\":\"\"} x\n"), QByteArray("\xff\xfe\n"),
          QByteArray("{\"action\":\"") + QByteArray(5000, 'x') +
              QByteArray("\",\"activation-token\":\"\"}\n"),
          QByteArray(5000, '[') + '\n'})
        EXPECT_EQ(parseRequestLine(line), std::nullopt) << line.left(60).toStdString();
}

TEST(ApplicationRequest, anUnsafeTokenInALineIsDropped) {
    const auto request = parseRequestLine("{\"action\":\"list\",\"activation-token\":\"a\\u0000b\"}\n");
    ASSERT_TRUE(request);
    EXPECT_EQ(request->action, "list");
    EXPECT_EQ(request->activationToken, "");
}

} // namespace
} // namespace tarnvale
