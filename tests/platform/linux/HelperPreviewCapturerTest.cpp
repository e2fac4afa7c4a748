// With helpers that are shell scripts; tests/preview-renderer has the real one.

#include "platform/linux/HelperPreviewCapturer.h"

#include "discovery/text.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"
#include "support/previewPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

using Picture = std::optional<QByteArray>;

class HelperPreviewCapturerTest : public testing::Test {
protected:
    HelperPreviewCapturerTest() {
        const auto write = [this](const char *name, const QByteArray &bytes) {
            m_folder.write(name, bytes.toStdString());
        };
        write("ready", previewReply({}));
        write("none", previewReply({}));
        write("picture", previewReply(previewPicture()));
        write("other", previewReply("<html>"));
        write("long", QByteArray("\xff\xff\xff\xff", 4));
    }

    /// A helper that tells it is ready and then runs `body`; "$port" is what it was asked for.
    void serve(const std::string &body) {
        script("cat ready\nwhile read -r port; do\necho $port >>asked\n" + body + "\ndone\n");
    }
    void script(const std::string &body) {
        m_helper = m_folder.writeScript("helper", "cd " + m_folder.path() + "\necho >>starts\n" + body);
        m_options.findHelper = [this] {
            ++m_searches;
            return m_helper;
        };
        m_capturer = std::make_unique<HelperPreviewCapturer>(m_options);
    }

    static Picture await(const QFuture<Picture> &capture) {
        EXPECT_TRUE(waitFor([&] { return capture.isFinished(); }));
        return capture.isFinished() ? capture.result() : "it never ended";
    }
    Picture capture(std::int64_t port = 3000) { return await(m_capturer->capture(port)); }
    [[nodiscard]] std::vector<std::string> lines(const char *file) const {
        const std::string text = readFile(m_folder.path(file));
        const auto all = nonEmptyLines(text);
        return {all.begin(), all.end()};
    }
    [[nodiscard]] std::size_t starts() const { return readFile(m_folder.path("starts")).size(); }
    static bool isGone(Pid pid) { return !std::filesystem::exists("/proc/" + std::to_string(pid)); }

    TemporaryFolder m_folder;
    std::string m_helper;
    HelperPreviewCapturer::Options m_options;
    int m_searches = 0;
    std::unique_ptr<HelperPreviewCapturer> m_capturer;
};

TEST_F(HelperPreviewCapturerTest, oneHelperAnswersAll) {
    serve("cat picture");
    EXPECT_EQ(m_capturer->helper(), std::nullopt) << "it starts when it is needed";
    EXPECT_EQ(capture(3000), previewPicture());
    EXPECT_EQ(capture(65535), previewPicture());
    EXPECT_THAT(lines("asked"), ElementsAre("3000", "65535"));
    EXPECT_EQ(starts(), 1U);
}

TEST_F(HelperPreviewCapturerTest, noPictureIsNoEnd) {
    serve("[ $port = 3000 ] && cat none || cat picture");
    EXPECT_EQ(capture(3000), std::nullopt);
    EXPECT_EQ(capture(3001), previewPicture());
    EXPECT_EQ(starts(), 1U);
}

TEST_F(HelperPreviewCapturerTest, whatIsNoPictureIsNotHandedOn) {
    serve("cat other");
    EXPECT_EQ(capture(), std::nullopt);
}

TEST_F(HelperPreviewCapturerTest, aPictureMayComeInPieces) {
    serve("head -c 2 picture; sleep 0.05; tail -c +3 picture | head -c 10; sleep 0.05; tail -c +13 picture");
    EXPECT_EQ(capture(), previewPicture());
}

TEST_F(HelperPreviewCapturerTest, whereNoneIsInstalledThereAreNoPictures) {
    script("");
    m_helper.clear();
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(m_capturer->helper(), std::nullopt);
    m_helper = m_folder.writeScript("helper", "cd " + m_folder.path() +
                                                  "\ncat ready; read -r port; cat picture; read -r port\n");
    EXPECT_EQ(capture(), previewPicture()) << "it was installed in the meantime";
}

TEST_F(HelperPreviewCapturerTest, whatCannotRunIsNotTriedAgainSoon) {
    m_options.pause = 1h;
    script("");
    m_helper = m_folder.write("plain", "no program");
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(m_searches, 1);
}

TEST_F(HelperPreviewCapturerTest, whatEndsBeforeItIsReadyIsNotTriedAgainSoon) {
    m_options.pause = 1h;
    script("exit 1\n");
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(starts(), 1U);
}

TEST_F(HelperPreviewCapturerTest, whatWasNotReadyIsTriedAgainLater) {
    m_options.pause = 0ms;
    script("[ $(wc -l <starts) = 1 ] && exit 1\ncat ready; read -r port; cat picture; read -r port\n");
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(capture(), previewPicture());
}

TEST_F(HelperPreviewCapturerTest, aCrashCostsOnePicture) {
    serve("[ $port = 3000 ] && kill -SEGV $$; cat picture");
    EXPECT_EQ(capture(3001), previewPicture());
    EXPECT_EQ(capture(3000), std::nullopt);
    EXPECT_EQ(capture(3001), previewPicture());
    EXPECT_EQ(starts(), 2U);
}

TEST_F(HelperPreviewCapturerTest, aCrashBetweenTwoPicturesCostsNone) {
    serve("cat picture");
    EXPECT_EQ(capture(), previewPicture());
    const Pid first = m_capturer->helper().value();
    kill(first, SIGKILL);
    ASSERT_TRUE(waitFor([this] { return !m_capturer->helper(); }));
    EXPECT_EQ(capture(), previewPicture());
}

TEST_F(HelperPreviewCapturerTest, aHangCostsOnePictureAndEndsAllThatHangs) {
    m_options.patience = 300ms;
    serve("[ $port = 3000 ] && { trap '' TERM; sleep 300 & echo $! >child; wait; }; cat picture");
    const QFuture<Picture> hanging = m_capturer->capture(3000);
    ASSERT_TRUE(waitFor([this] { return !lines("child").empty(); }));
    const Pid helper = m_capturer->helper().value();
    const Pid child = std::stoi(lines("child").front());
    EXPECT_EQ(await(hanging), std::nullopt);
    EXPECT_TRUE(waitFor([&] { return isGone(helper); }));
    EXPECT_TRUE(waitFor([&] { return isGone(child); }));
    EXPECT_EQ(capture(3001), previewPicture());
}

TEST_F(HelperPreviewCapturerTest, aStartThatHangsIsNotTriedAgainSoon) {
    m_options.patience = 100ms;
    m_options.pause = 1h;
    script("exec sleep 300\n");
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(m_searches, 1);
}

TEST_F(HelperPreviewCapturerTest, aReplyThatNeverEndsIsNotRead) {
    serve("[ $port = 3000 ] && cat long /dev/zero; cat picture");
    EXPECT_EQ(capture(3000), std::nullopt);
    EXPECT_EQ(capture(3001), previewPicture());
}

TEST_F(HelperPreviewCapturerTest, whatNobodyAskedForEndsIt) {
    serve("cat picture picture");
    const QFuture<Picture> first = m_capturer->capture(3000);
    EXPECT_EQ(await(first), previewPicture());
    EXPECT_TRUE(waitFor([this] { return !m_capturer->helper(); }));
}

TEST_F(HelperPreviewCapturerTest, onlyPortsAreAskedFor) {
    serve("cat picture");
    for (const std::int64_t port : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{65536}, INT64_MAX})
        EXPECT_EQ(capture(port), std::nullopt) << port;
    EXPECT_EQ(starts(), 0U);
}

TEST_F(HelperPreviewCapturerTest, oneCaptureAtATime) {
    serve("sleep 0.2; cat picture");
    const QFuture<Picture> first = m_capturer->capture(3000);
    EXPECT_EQ(capture(3001), std::nullopt);
    EXPECT_EQ(await(first), previewPicture());
    EXPECT_THAT(lines("asked"), ElementsAre("3000"));
}

TEST_F(HelperPreviewCapturerTest, withoutWorkItEnds) {
    m_options.idleTime = 50ms;
    serve("sleep 0.2; cat picture");
    EXPECT_EQ(capture(), previewPicture()) << "while it works it isn't idle";
    const Pid helper = m_capturer->helper().value();
    EXPECT_TRUE(waitFor([this] { return !m_capturer->helper(); }));
    EXPECT_TRUE(waitFor([&] { return isGone(helper); }));
    EXPECT_EQ(capture(), previewPicture());
    EXPECT_EQ(starts(), 2U);
}

TEST_F(HelperPreviewCapturerTest, itEndsWithItsOwner) {
    serve("sleep 300");
    const QFuture<Picture> hanging = m_capturer->capture(3000);
    ASSERT_TRUE(waitFor([this] { return !lines("asked").empty(); }));
    const Pid helper = m_capturer->helper().value();
    m_capturer.reset();
    EXPECT_EQ(await(hanging), std::nullopt);
    EXPECT_TRUE(waitFor([&] { return isGone(helper); }));
}

TEST_F(HelperPreviewCapturerTest, itHasNothingOfOursOpen) {
    script("exec 3>open; ls /proc/$$/fd >&3; readlink /proc/$$/fd/2 >&3; exec 3>&-\n"
           "cat ready; read -r port; cat picture; read -r port\n");
    EXPECT_EQ(capture(), previewPicture());
    // Shells keep their own from 10 on; 3 is where the list goes to.
    const auto open = lines("open");
    ASSERT_GE(open.size(), 5U);
    EXPECT_THAT(std::vector<std::string>(open.begin(), open.begin() + 4),
                ElementsAre("0", "1", testing::_, testing::_));
    EXPECT_EQ(open.back(), "/dev/null") << "what it says about pages interests nobody";
}

} // namespace
} // namespace tarnvale
