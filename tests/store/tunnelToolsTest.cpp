#include "store/tunnelTools.h"

#include "support/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

TEST(TunnelToolsTest, theFirstInstalledToolIsUsed) {
    FakeTools tools;
    EXPECT_FALSE(findTunnelTool(tools));
    tools.installed["ngrok"] = "/usr/local/bin/ngrok";
    ASSERT_TRUE(findTunnelTool(tools));
    EXPECT_EQ(findTunnelTool(tools)->tool, TunnelTool::ngrok);
    tools.installed["cloudflared"] = "/usr/bin/cloudflared";
    EXPECT_EQ(findTunnelTool(tools)->tool, TunnelTool::cloudflared);
    EXPECT_EQ(findTunnelTool(tools)->path, "/usr/bin/cloudflared");
}

TEST(TunnelToolsTest, eachToolHasItsArguments) {
    EXPECT_THAT(tunnelArguments(3000, TunnelTool::cloudflared),
                ElementsAre("tunnel", "--no-autoupdate", "--url", "http://localhost:3000"));
    EXPECT_THAT(tunnelArguments(3000, TunnelTool::ngrok),
                ElementsAre("http", "3000", "--log", "stdout", "--log-format", "logfmt"));
}

TEST(PublicURLTest, theFirstAddressIsFound) {
    struct Row {
        std::string output;
        std::optional<std::string> url;
    };
    const std::vector<Row> rows{
        {"", std::nullopt},
        {"INF |  https://deft-words-here.trycloudflare.com   |", "https://deft-words-here.trycloudflare.com"},
        {"t=2025 lvl=info msg=\"started tunnel\" url=https://1a2b-3c.ngrok-free.app\n",
         "https://1a2b-3c.ngrok-free.app"},
        {"url=https://x.ngrok.io", "https://x.ngrok.io"},
        {"url=https://x.ngrok.app/path?q", "https://x.ngrok.app"},
        {"url=https://a.b.ngrok-free.dev", "https://a.b.ngrok-free.dev"},
        {"https://one.ngrok.app https://two.ngrok.app", "https://one.ngrok.app"},
        {"http://x.ngrok.app", std::nullopt},
        {"https://x.NGROK.app", std::nullopt},
        {"https://ngrok.app", std::nullopt},
        {"https://example.com", std::nullopt},
        {"https://x_y.ngrok.app", std::nullopt},
        {"failed to request quick Tunnel: Post \"https://api.trycloudflare.com/tunnel\": dial tcp",
         std::nullopt},
        {"https://api.trycloudflare.com/tunnel then https://my-api.trycloudflare.com",
         "https://my-api.trycloudflare.com"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(publicURL(row.output), row.url) << row.output;
}

} // namespace
} // namespace tarnvale
