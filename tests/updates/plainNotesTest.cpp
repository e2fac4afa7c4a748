#include "updates/plainNotes.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnvale {
namespace {

std::string html(const std::string &text) {
    return plainNotes(QString::fromStdString(text), true);
}

TEST(PlainNotesTest, markupBecomesLines) {
    struct Row {
        std::string html;
        std::string text;
    };
    const std::vector<Row> rows{
        {"<h2>New</h2><ul><li>One</li>\n<li>Two <b>bold</b></li></ul><p>Bye</p>",
         "New\n\n• One\n• Two bold\n\nBye"},
        {"<p>a</p>\n\n<p>b</p>", "a\n\nb"},
        {"a<br>b<BR/>c", "a\nb\nc"},
        {"<div>a</div><div>b</div>", "a\nb"},
        {"<p>x&nbsp;&amp;&lt;b&gt;&#8211;&#x2014;&hellip;</p>", "x &<b>–—…"},
        {"<p>many    blanks\n and\tlines</p>", "many blanks and lines"},
        {"<a href=\"https://a.example/\">link</a><img src=\"https://spy.example/x.png\">", "link"},
        {"<style>p { color: red }</style><script>alert('<p>')</script><p>a</p>", "a"},
        {"<head><title>t</title></head><body>a</body>", "a"},
        {"a<!-- <p>hidden</p> -->b<i></i>", "ab"},
        {"<p>a < b, c > d</p>", "a < b, c > d"},
        {"<p>1 <2 and 3> 2</p>", "1 <2 and 3> 2"},
        {"<p>&unknown; & &; &#0; &#xD800; &#9999999;</p>", "&unknown; & &; \uFFFD \uFFFD \uFFFD"},
        {"<iframe src=x>", ""},
        {"<p>a<script>never closed", "a"},
        {"<p>a<b", "a<b"},
        {"<>x</>", "<>x</>"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(html(row.html), row.text) << row.html;
}

TEST(PlainNotesTest, textWithoutMarkupKeepsItsLines) {
    EXPECT_EQ(html("- one\n- two\n\n\n\n  indented\r\nend \n"), "- one\n- two\n\n  indented\nend");
    EXPECT_EQ(html("a < b and c > d\nx"), "a < b and c > d\nx");
    EXPECT_EQ(plainNotes(QStringLiteral("<p>\na\tb"), false), "<p>\na b");
    EXPECT_EQ(html(""), "");
    EXPECT_EQ(html(" \n \n"), "");
}

TEST(PlainNotesTest, noCharacterActsOnTheScreen) {
    EXPECT_EQ(html("<p>a\x1B[31mb\xE2\x80\xAEz</p>"), "a\uFFFD[31mb\uFFFDz");
    EXPECT_EQ(html("a\x07\nb"), "a\uFFFD\nb");
    EXPECT_EQ(plainNotes(QStringLiteral("a\u2028b\u2029c"), false), "a\nb\nc");
}

TEST(PlainNotesTest, longNotesEndAtAWholeCharacter) {
    QString text;
    while (text.size() < 100'000)
        text += QStringLiteral("ä€");
    const std::string cut = plainNotes(text, false);
    EXPECT_LE(cut.size(), 64u << 10);
    EXPECT_GT(cut.size(), (64u << 10) - 4);
    EXPECT_EQ(QString::fromStdString(cut), text.left(QString::fromStdString(cut).size()));
    EXPECT_EQ(plainNotes(QStringLiteral("ends …"), false), "ends …");
}

TEST(PlainNotesTest, oddMarkupTakesNoTime) {
    for (const char *piece : {"<", "<a", "<!--", "&", "<script>", "<li>", "</", "&#", "<p>"}) {
        QString text;
        while (text.size() < 300'000)
            text += QLatin1String(piece);
        EXPECT_LE(plainNotes(text, true).size(), 64u << 10) << piece;
        EXPECT_LE(plainNotes(text + QLatin1Char('>'), true).size(), 64u << 10) << piece;
    }
}

} // namespace
} // namespace tarnvale
