#include "probes/classifyReply.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ClassifyReplyTest, aStatusLineTellsTheStatus) {
    EXPECT_EQ(classifyReply("HTTP/1.0 204 No Content\r\n"), Health::responding(204));
    EXPECT_EQ(classifyReply("HTTP/1.1 301 Moved Permanently\r\nLocation: /x"), Health::responding(301));
    EXPECT_EQ(classifyReply("HTTP/1.1 404 Not Found"), Health::responding(404));
}

TEST(ClassifyReplyTest, from500OnTheServerIsInError) {
    EXPECT_EQ(classifyReply("HTTP/1.1 499 x"), Health::responding(499));
    EXPECT_EQ(classifyReply("HTTP/1.1 500 x"), Health::serverError(500));
    EXPECT_EQ(classifyReply("HTTP/1.1 503 Service Unavailable"), Health::serverError(503));
    EXPECT_EQ(classifyReply("HTTP/1.1 999"), Health::serverError(999));
}

TEST(ClassifyReplyTest, onlyTheFirstChunkCounts) {
    EXPECT_EQ(classifyReply("HTTP/1.1 500"), Health::serverError(500));
    EXPECT_EQ(classifyReply("HTTP/1.1 2"), Health::responding(2));
}

TEST(ClassifyReplyTest, theNumberMayHaveASign) {
    EXPECT_EQ(classifyReply("HTTP/1.1 -12"), Health::responding(-12));
    EXPECT_EQ(classifyReply("HTTP/1.1 +50 x"), Health::responding(50));
}

TEST(ClassifyReplyTest, charactersAreCountedNotBytes) {
    EXPECT_EQ(classifyReply("HTTP/1.é€200 OK"), Health::responding(200));
    EXPECT_EQ(classifyReply("HTTP/1.\xFF\xFE"
                            "502 x"),
              Health::serverError(502))
        << "two repaired bytes";
}

struct BadReply {
    std::string_view bytes;
    const char *reason;
};

TEST(ClassifyReplyTest, everythingElseIsUnknown) {
    using namespace std::string_view_literals;
    for (const auto &[bytes, reason] : std::vector<BadReply>{
             {"", "nothing came"},
             {"H", "cut after a byte"},
             {"HTTP/1", "cut before the dot"},
             {"HTTP/1.", "no version"},
             {"HTTP/1.1", "no blank"},
             {"HTTP/1.1 ", "no status"},
             {"HTTP/2 200", "another major version"},
             {"http/1.1 200 OK", "in lower case"},
             {" HTTP/1.1 200 OK", "not at the start"},
             {"HTTP/1.1 OK", "a word"},
             {"HTTP/1.1  20", "a blank first"},
             {"HTTP/1.1 20\r\n", "a line end in the number"},
             {"HTTP/1.1 2 0", "two numbers"},
             {"HTTP/1.1 +-1", "two signs"},
             {"HTTP/1.1 -", "a sign alone"},
             {"HTTP/1.1 0x1", "another base"},
             {"HTTP/1.1 \0\0\0"sv, "NUL bytes"},
             {"HTTP/1.1 ٢٠٠", "digits of another script"},
             {"SSH-2.0-OpenSSH_9.2p1\r\n", "a shell server's greeting"},
             {"220 mail.local ESMTP\r\n", "a mail server's greeting"},
             {"\x15\x03\x01\x00\x02\x02"sv, "an alert of TLS"},
             {"\xFF\xFE\xFD", "no text at all"},
         })
        EXPECT_EQ(classifyReply(bytes), Health::unknown()) << reason;
}

TEST(ClassifyReplyTest, aReplyCutAnywhereIsKnownOrNot) {
    const std::string reply = "HTTP/1.1 200 OK\r\nServer: x\r\n";
    for (std::size_t length = 0; length <= reply.size(); ++length) {
        const Health health = classifyReply(reply.substr(0, length));
        EXPECT_EQ(health.kind, length < 10 ? Health::Kind::unknown : Health::Kind::responding) << length;
    }
}

} // namespace
} // namespace tarnvale
