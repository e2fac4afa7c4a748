// Pages that want more than to be drawn, or never end.

#include "preview-renderer/PreviewTest.h"

#include <filesystem>

namespace tarnvale {
namespace {

class HostilePages : public PreviewTest {
protected:
    /// A page whose script is done with `blue` becoming `green`.
    static QByteArray script(const QByteArray &code) {
        return coloured(blue, "<script>const good = () => document.body.style.background = '" +
                                  QByteArray(green) + "';" + code + "</script>");
    }
    /// Whatever came of the page before, the next one has its picture.
    void expectTheNextIsDrawn() { EXPECT_EQ(colourOf(capturePage(coloured(green))), green); }
};

TEST_F(HostilePages, dialogsAreDismissed) {
    EXPECT_EQ(colourOf(capturePage(script("alert('hello'); if (confirm('really?') === false &&"
                                          "prompt('name?', 'me') === null) good()"))),
              green);
}

TEST_F(HostilePages, aLoopOfAlertsEnds) {
    EXPECT_TRUE(capturePage(script("for (;;) alert('hello')")).isNull());
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, aLoopWithoutEndEnds) {
    EXPECT_TRUE(capturePage(script("for (;;);")).isNull());
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, aLoopThatBeginsLaterEndsToo) {
    capturePage(script("onload = () => setTimeout(() => { for (;;); }, 100)"));
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, aPageThatNeverFinishesIsGivenUp) {
    EXPECT_TRUE(capturePage(coloured(blue, "<img src='/never'>")).isNull());
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, aServerThatNeverAnswersIsGivenUp) {
    EXPECT_TRUE(capture(server.port()).isNull());
    EXPECT_EQ(server.asked.size(), 1U);
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, nothingIsPermitted) {
    EXPECT_EQ(colourOf(capturePage(script(
                  "const no = promise => promise.then(() => false, () => true);"
                  "Promise.all(["
                  "no(navigator.mediaDevices.getUserMedia({audio: true, video: true})),"
                  "no(navigator.mediaDevices.getDisplayMedia()),"
                  "no(new Promise((yes, no) => navigator.geolocation.getCurrentPosition(yes, no))),"
                  "no(navigator.clipboard.readText()),"
                  "Notification.requestPermission().then(answer => answer != 'granted'),"
                  "no(new Audio('data:audio/wav;base64,UklGRiQAAABXQVZFZm10IBAAAAABAAEARKwAAIhYAQACABAAZGF0"
                  "YQAAAAA=').play()),"
                  "no(document.documentElement.requestFullscreen())"
                  "]).then(refused => { if (refused.every(x => x)) good();"
                  " else document.body.textContent = refused })"))),
              green);
}

TEST_F(HostilePages, aDownloadIsRefused) {
    server.replies["/"] = "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
                          "Content-Disposition: attachment; filename=x.bin\r\nConnection: close\r\n\r\n" +
                          QByteArray(1 << 20, 'x');
    EXPECT_TRUE(capture(server.port()).isNull());
    server.replies["/file"] = server.replies["/"];
    EXPECT_EQ(colourOf(capturePage(coloured(
                  blue, "<a id=a href='/file' download>a</a><script>onload = () => a.click()</script>"))),
              blue);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST_F(HostilePages, aLogInIsRefused) {
    server.replies["/"] = "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                          "Content-Type: text/html\r\nConnection: close\r\n\r\n" +
                          coloured(blue);
    EXPECT_EQ(colourOf(capture(server.port())), blue) << "what there is without one";
}

TEST_F(HostilePages, memoryWithoutEndEndsThePageAlone) {
    for (const char *code : {"const a = []; for (;;) a.push(new Uint8Array(50 << 20).fill(1))",
                             "const a = []; for (;;) a.push(new Array(1e6).fill(Math.random()))",
                             "let s = 'x'; for (;;) document.body.append(s += s)",
                             "for (let i = 0; i < 50; ++i) new Worker(URL.createObjectURL(new Blob(["
                             "'const a = []; for (;;) a.push(new Uint8Array(10 << 20).fill(1))'])))"}) {
        capturePage(script(code));
        expectTheNextIsDrawn();
    }
}

TEST_F(HostilePages, manyFramesEnd) {
    capturePage(script("onload = () => { for (let i = 0; i < 500; ++i) { const f = "
                       "document.createElement('iframe'); f.src = 'http://a' + i + '.localhost:' + "
                       "location.port; document.body.append(f) } }"));
    expectTheNextIsDrawn();
}

TEST_F(HostilePages, aReplyWithoutEndIsGivenUp) {
    server.replies["/"] =
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 999999999999\r\n\r\n" +
        QByteArray(8 << 20, 'x');
    capture(server.port());
    expectTheNextIsDrawn();
}

} // namespace
} // namespace tarnvale
