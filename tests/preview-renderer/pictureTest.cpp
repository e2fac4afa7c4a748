// What a picture shows.

#include "preview-renderer/PreviewTest.h"
#include "support/ManualClock.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace tarnvale {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Picture : public PreviewTest {};

TEST_F(Picture, aPlainPageIsDrawnAtItsSize) {
    const QImage picture = capturePage(coloured(
        blue,
        "<div style='position:absolute;left:640px;top:0;width:640px;height:400px;background:#fff'></div>"));
    ASSERT_EQ(picture.size(), QSize(640, 400));
    const auto at = [&](int x, int y) { return picture.pixelColor(x, y).name().toStdString(); };
    EXPECT_EQ(at(10, 10), blue);
    EXPECT_EQ(at(310, 390), blue);
    EXPECT_EQ(at(630, 390), blue) << "nothing of the window's own lies over the page";
    EXPECT_EQ(at(330, 10), "#ffffff");
    EXPECT_EQ(at(630, 190), "#ffffff");
    EXPECT_EQ(at(630, 210), blue);
}

TEST_F(Picture, onlyTheFirstScreenOfALongPageIsShown) {
    const QImage picture = capturePage(coloured(blue, "<div style='height:50000px'></div>"));
    EXPECT_EQ(picture.size(), QSize(640, 400));
    EXPECT_EQ(picture.pixelColor(639, 200).name().toStdString(), blue) << "no scroll bar";
}

TEST_F(Picture, scriptsHaveTimeToDraw) {
    const QByteArray script = "<script>setTimeout(() => document.body.style.background = '" +
                              QByteArray(green) + "', 500)</script>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, script))), green);
}

TEST_F(Picture, theFrontPageMayBeMadeOfManyFiles) {
    server.replies["/app.js"] =
        "HTTP/1.1 200 OK\r\nContent-Type: text/javascript\r\nConnection: close\r\n\r\n"
        "document.body.style.background = '" +
        QByteArray(green) + "'";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, "<script type=module src=/app.js></script>"))), green);
}

TEST_F(Picture, ofAPageThatLeadsOnTheOneItLeadsToIsShown) {
    server.setPage("/app", coloured(green));
    EXPECT_EQ(colourOf(capturePage(coloured(blue, "<script>location.replace('/app')</script>"))), green);
}

TEST_F(Picture, aPageIsLoadedAnewEachTime) {
    server.replies["/"] = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nCache-Control: max-age=3600\r\n"
                          "Connection: close\r\n\r\n" +
                          coloured(blue);
    EXPECT_EQ(colourOf(capture(server.port())), blue);
    EXPECT_EQ(colourOf(capture(server.port())), blue);
    EXPECT_THAT(server.asked, ElementsAre("/", "/")) << "and nothing more than what is shown";
}

TEST_F(Picture, aPageIsLeftWhenItsPictureIsTaken) {
    server.setPage("/still-here", "");
    const QByteArray script = "<script>setInterval(() => fetch('/still-here'), 20)</script>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, script))), blue);
    const PageServer other;
    capture(other.port()); // gives the first one time enough
    const auto asked = server.asked.size();
    server.setPage("/", coloured(green));
    EXPECT_EQ(colourOf(capture(server.port())), green);
    EXPECT_THAT(server.asked, Contains("/still-here"));
    EXPECT_LE(std::count(server.asked.begin() + static_cast<std::ptrdiff_t>(asked), server.asked.end(),
                         "/still-here"),
              0)
        << "it went on";
}

TEST_F(Picture, nothingIsWritten) {
    const QByteArray script =
        "<script>localStorage.a = 1; document.cookie = 'a=1; max-age=99999';"
        "indexedDB.open('a', 1); caches.open('a').then(c => c.put('/', new Response('a')))"
        "</script>";
    EXPECT_EQ(colourOf(capturePage(coloured(blue, script))), blue);
    std::vector<std::string> written;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(home.path()))
        written.push_back(entry.path());
    EXPECT_THAT(written, IsEmpty());
}

TEST_F(Picture, aPageThatTellsOfAnErrorIsAPage) {
    server.replies["/"] =
        "HTTP/1.1 404 Not Found\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n" + coloured(blue);
    EXPECT_EQ(colourOf(capture(server.port())), blue);
}

TEST_F(Picture, ofAFailureThereIsNone) {
    const auto portOfNobody = [] { return PageServer().port(); };
    EXPECT_TRUE(capture(portOfNobody()).isNull());
    server.replies["/"] = "SSH-2.0-OpenSSH_9.2\r\n";
    EXPECT_TRUE(capture(server.port()).isNull()) << "no web server";
    server.replies["/"] = "";
    EXPECT_TRUE(capture(server.port()).isNull()) << "an empty reply";
    server.replies["/"] = QByteArray("\x15\x03\x01\0\2\2\x46", 7);
    EXPECT_TRUE(capture(server.port()).isNull()) << "a server that wants to be spoken to in TLS";
}

} // namespace
} // namespace tarnvale
