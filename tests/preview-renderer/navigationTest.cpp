// Where a page may lead. 127.0.0.2 stands for another computer: an address of its own that is still this one.

#include "preview-renderer/PreviewTest.h"
#include "support/runProgram.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::Contains;
using testing::IsEmpty;

class Navigation : public PreviewTest {
protected:
    Navigation() {
        elsewhere.setPage("/", coloured(green));
        server.setPage("/app", coloured(green));
    }
    [[nodiscard]] QByteArray away() const { return QByteArray::fromStdString(elsewhere.url("127.0.0.2")); }

    PageServer elsewhere{QHostAddress(QStringLiteral("127.0.0.2"))};
};

TEST_F(Navigation, aFrameFromElsewhereIsCancelledAndThePageStays) {
    const QByteArray frame =
        "<iframe style='border:0;width:1280px;height:800px' src='" + away() + "'></iframe>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, frame))), blue);
    EXPECT_EQ(elsewhere.connections, 0);
}

TEST_F(Navigation, aFrameFromHereIsShown) {
    const QByteArray frame = "<iframe style='border:0;width:1280px;height:800px' src='/app'></iframe>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, frame))), green);
}

TEST_F(Navigation, everyOtherWayToEmbedAPageIsCancelled) {
    const QByteArray page =
        coloured(blue, "<object data='" + away() + "'></object><embed src='" + away() +
                           "'><iframe srcdoc=\"<iframe src='" + away() +
                           "'></iframe>\"></iframe><iframe src='/leads-away'></iframe><script>"
                           "const f = document.createElement('iframe'); document.body.append(f);"
                           "f.contentWindow.location = '" +
                           away() + "'</script>");
    server.setRedirect("/leads-away", elsewhere.url("127.0.0.2"));
    EXPECT_EQ(colourOf(capturePage(page)), blue);
    EXPECT_THAT(server.asked, Contains("/leads-away"));
    EXPECT_EQ(elsewhere.connections, 0);
}

TEST_F(Navigation, aRedirectElsewhereGivesNoPicture) {
    server.setRedirect("/", elsewhere.url("127.0.0.2"));
    EXPECT_TRUE(capture(server.port()).isNull());
    server.setRedirect("/", "https://example.invalid/");
    EXPECT_TRUE(capture(server.port()).isNull());
    server.setRedirect("/", "file:///etc/passwd");
    EXPECT_TRUE(capture(server.port()).isNull());
    EXPECT_EQ(elsewhere.connections, 0);
}

TEST_F(Navigation, aLongWayElsewhereGivesNoPicture) {
    server.setRedirect("/", "/1");
    server.setRedirect("/1", server.url("127.0.0.1", "/2"));
    server.setRedirect("/2", elsewhere.url("127.0.0.2"));
    EXPECT_TRUE(capture(server.port()).isNull());
    EXPECT_THAT(server.asked, Contains("/2"));
    EXPECT_EQ(elsewhere.connections, 0);
}

TEST_F(Navigation, aRedirectInACircleGivesNoPicture) {
    server.setRedirect("/", "/");
    EXPECT_TRUE(capture(server.port()).isNull());
}

TEST_F(Navigation, aRedirectToAnotherNameOfThisComputerIsFollowed) {
    for (const char *host : {"127.0.0.1", "shop.localhost"}) {
        server.setRedirect("/", server.url(host, "/app"));
        EXPECT_EQ(colourOf(capture(server.port())), green) << host;
    }
}

TEST_F(Navigation, aScriptThatLeadsElsewhereGivesNoPicture) {
    for (const QByteArray &way :
         {"location.href = '" + away() + "'",
          "document.write('<form id=f method=post action=\"" + away() + "\"></form>'); f.submit()"}) {
        EXPECT_TRUE(capturePage(coloured(blue, "<script>" + way + "</script>")).isNull())
            << way.toStdString();
        EXPECT_EQ(elsewhere.connections, 0) << way.toStdString();
    }
}

TEST_F(Navigation, aPageThatWouldLeadElsewhereWhenItIsLoadedStays) {
    for (const QByteArray &way :
         {"setTimeout(() => location.replace('" + away() + "'), 200)",
          "document.write('<meta http-equiv=refresh content=\"0;url=" + away() + "\">')"}) {
        EXPECT_EQ(colourOf(capturePage(coloured(blue, "<script>" + way + "</script>"))), blue)
            << way.toStdString();
        EXPECT_EQ(elsewhere.connections, 0) << way.toStdString();
    }
}

TEST_F(Navigation, noWindowIsOpened) {
    const QByteArray script = "<a id=a target=_blank href='/app'>a</a><script>"
                              "onload = () => { for (let i = 0; i < 50; ++i) window.open('/app'); a.click();"
                              "window.open('" +
                              away() + "') }</script>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, script))), blue);
    EXPECT_THAT(server.asked, testing::Not(Contains("/app")));
    EXPECT_EQ(elsewhere.connections, 0);
}

TEST_F(Navigation, aServerThatSignedItsOwnCertificateGivesNoPicture) {
    const std::string key = home.path("key.pem");
    const std::string certificate = home.path("certificate.pem");
    const auto made =
        runProgram({"/usr/bin/openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                    "-subj", "/CN=localhost", "-keyout", key, "-out", certificate});
    if (made.status != 0)
        GTEST_SKIP() << "openssl can't make a certificate here";
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(
        QSslCertificate(QByteArray::fromStdString(readFile(certificate)), QSsl::Pem));
    configuration.setPrivateKey(QSslKey(QByteArray::fromStdString(readFile(key)), QSsl::Rsa));
    auto secured = std::make_unique<QSslServer>();
    secured->setSslConfiguration(configuration);
    PageServer signedByItself(QHostAddress::LocalHost, std::move(secured));
    signedByItself.setPage("/", coloured(green));
    server.setRedirect("/", "https://localhost:" + std::to_string(signedByItself.port()) + "/");
    EXPECT_TRUE(capture(server.port()).isNull());
    EXPECT_TRUE(capture(signedByItself.port()).isNull());
    EXPECT_THAT(signedByItself.asked, IsEmpty());
}

} // namespace
} // namespace tarnvale
