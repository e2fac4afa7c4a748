#include "platform/PreviewProtocol.h"

#include "platform/PreviewCapturer.h"
#include "support/previewPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<QByteArray> takeAll(PreviewReplies &replies) {
    std::vector<QByteArray> all;
    while (const auto reply = replies.next())
        all.push_back(*reply);
    return all;
}

std::string bytes(const QByteArray &array) {
    return array.toStdString();
}

TEST(PreviewProtocol, aRequestIsAPortAndALineFeed) {
    EXPECT_EQ(previewRequest(5173), "5173\n");
    EXPECT_EQ(parsePreviewRequest("5173"), 5173);
    EXPECT_EQ(parsePreviewRequest("1"), 1);
    EXPECT_EQ(parsePreviewRequest("65535"), 65535);
}

TEST(PreviewProtocol, whatIsNoPortIsNoRequest) {
    struct Row {
        std::string_view line;
        const char *reason;
    };
    const Row rows[]{
        {"", "empty"},
        {"0", "no server has it"},
        {"65536", "too large"},
        {"-1", "negative"},
        {"+80", "a sign"},
        {" 80", "a blank before"},
        {"80 ", "a blank after"},
        {"80\r", "a line's other end"},
        {"8x", "a letter"},
        {"80/admin", "a path"},
        {"99999999999999999999", "more than a number holds"},
        {std::string_view("80\0", 3), "a zero byte"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parsePreviewRequest(row.line), std::nullopt) << row.reason;
}

TEST(PreviewProtocol, aReplyIsItsLengthAndItsBytes) {
    EXPECT_EQ(previewReply("abc"), QByteArray("\0\0\0\3abc", 7));
    EXPECT_EQ(previewReply({}), QByteArray("\0\0\0\0", 4));
}

TEST(PreviewProtocol, whatIsTooLongToSendIsNoPicture) {
    EXPECT_EQ(previewReply(QByteArray(PreviewReplies::mostBytes + 1, 'x')), previewReply({}));
    EXPECT_EQ(previewReply(QByteArray(PreviewReplies::mostBytes, 'x')).size(), PreviewReplies::mostBytes + 4);
}

TEST(PreviewProtocol, repliesAreWholeHoweverTheyArrive) {
    const std::string stream =
        bytes(previewReply({}) + previewReply("one") + previewReply({}) + previewReply(QByteArray(300, 'x')));
    for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
        PreviewReplies replies;
        std::vector<QByteArray> all;
        for (const std::string &piece : {stream.substr(0, cut), stream.substr(cut)}) {
            replies.add(piece);
            for (const QByteArray &reply : takeAll(replies))
                all.push_back(reply);
        }
        EXPECT_THAT(all, ElementsAre("", "one", "", QByteArray(300, 'x'))) << cut;
        EXPECT_FALSE(replies.isBroken());
    }
}

TEST(PreviewProtocol, aReplyCutShortIsNone) {
    PreviewReplies replies;
    replies.add(bytes(previewReply("abc")).substr(0, 6));
    EXPECT_EQ(replies.next(), std::nullopt);
    EXPECT_FALSE(replies.isBroken());
}

TEST(PreviewProtocol, aLengthBeyondAllPicturesBreaksTheConversation) {
    for (const std::string &begin :
         {std::string("\0\x40\0\1", 4), std::string("\xff\xff\xff\xff", 4), std::string("HTTP/1.1 200 OK")}) {
        PreviewReplies replies;
        replies.add(begin);
        EXPECT_EQ(replies.next(), std::nullopt);
        EXPECT_TRUE(replies.isBroken());
        replies.add(bytes(previewReply("abc")));
        EXPECT_EQ(replies.next(), std::nullopt) << "nothing is read any more";
    }
    PreviewReplies replies;
    replies.add(std::string("\0\x40\0\0", 4));
    EXPECT_EQ(replies.next(), std::nullopt);
    EXPECT_FALSE(replies.isBroken()) << "the longest is still one";
}

TEST(PreviewProtocol, onlyAnImageOfAPicturesSizeIsAPicture) {
    constexpr int width = PreviewCapturer::pictureWidth;
    EXPECT_TRUE(isPreviewPicture(previewPicture(width, 400)));
    EXPECT_TRUE(isPreviewPicture(previewPicture(width, 1)));
    QByteArray other = previewPicture(width, 400);
    other[12] = 'X';
    struct Row {
        QByteArray bytes;
        const char *reason;
    };
    const Row rows[]{
        {{}, "empty"},
        {"<html>", "a text"},
        {QByteArray("\xff\xd8\xff\xe0", 4) + QByteArray(100, 'x'), "an image of another kind"},
        {previewPicture(width, 400).first(23), "cut short"},
        {other, "its header isn't first"},
        {previewPicture(width - 1, 400), "too narrow"},
        {previewPicture(100'000, 400), "too wide"},
        {previewPicture(width, 0), "of no height"},
        {previewPicture(width, 2'000'000'000), "more than a viewer can bear"},
    };
    for (const Row &row : rows)
        EXPECT_FALSE(isPreviewPicture(row.bytes)) << row.reason;
}

} // namespace
} // namespace tarnvale
