#include "presentation/window/LogDocument.h"

#include "platform/background.h"
#include "store/ChangeCounter.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

struct Growth {
    const char *name;
    QStringList before;
    QStringList after;
    qsizetype gone;
};

class LinesGone : public testing::TestWithParam<Growth> {};

TEST_P(LinesGone, areThoseThatLeftTheHead) {
    EXPECT_EQ(linesGone(GetParam().before, GetParam().after), GetParam().gone);
}

QStringList split(const char *letters) {
    return QString::fromLatin1(letters).split(QString(), Qt::SkipEmptyParts);
}

INSTANTIATE_TEST_SUITE_P(
    all, LinesGone,
    testing::Values(Growth{"nothing", {}, {}, 0}, Growth{"theFirstLines", {}, split("ab"), 0},
                    Growth{"nothingNew", split("abc"), split("abc"), 0},
                    Growth{"linesAtTheEnd", split("ab"), split("abcd"), 0},
                    Growth{"theHeadLeft", split("abcd"), split("cd"), 2},
                    Growth{"theHeadLeftAndMoreCame", split("abcd"), split("cdef"), 2},
                    Growth{"onlyTheLastIsLeft", split("abcd"), split("dxyz"), 3},
                    Growth{"anotherText", split("abc"), split("xyz"), 3},
                    Growth{"emptied", split("abc"), {}, 3},
                    Growth{"cutAtItsEnd", split("abc"), split("ab"), 3},
                    Growth{"equalLines", split("aaaa"), split("aaaab"), 0},
                    Growth{"equalLinesOfWhichSomeLeft", split("aaab"), split("aab"), 1},
                    Growth{"aLineInTheMiddleChanged", split("abc"), split("axc"), 3},
                    Growth{"theLastLineGrew", {"a", "par"}, {"a", "partial"}, 0},
                    Growth{"theLastLineGrewAndTheHeadLeft", {"a", "b", "par"}, {"b", "partial", "c"}, 1},
                    Growth{"theOnlyLineGrew", {"par"}, {"partial"}, 0},
                    Growth{"anEarlierLineGrew", {"a", "par", "b"}, {"a", "partial", "b"}, 3}),
    [](const auto &growth) { return growth.param.name; });

class LogDocumentTest : public testing::Test {
protected:
    LogDocumentTest() {
        component.setData("import QtQuick\nTextEdit { textFormat: TextEdit.PlainText; readOnly: true;"
                          " property var doc: textDocument }",
                          {});
        editor.reset(qobject_cast<QQuickItem *>(component.create()));
        log = std::make_unique<LogDocument>(world.platform());
        log->setDocument(quickDocument());
    }
    ~LogDocumentTest() override {
        log.reset();
        backgroundThreads().waitForDone();
        world.clock.wakeAll();
    }

    [[nodiscard]] QQuickTextDocument *quickDocument() const {
        return editor->property("doc").value<QQuickTextDocument *>();
    }
    [[nodiscard]] QTextDocument &document() const { return *quickDocument()->textDocument(); }
    [[nodiscard]] std::string shown() const { return document().toPlainText().toStdString(); }

    void awaitReads() {
        ASSERT_TRUE(waitFor([] {
            settle();
            return backgroundThreads().isIdle();
        }));
        settle();
    }
    void pass(std::chrono::milliseconds time) {
        world.clock.advance(time);
        awaitReads();
    }

    void follow(const std::optional<LogSource> &source) {
        log->follow(source);
        awaitReads();
    }
    /// Replaces the log's file and lets it be read.
    void write(const std::string &content) {
        const LogSource source = LogSource::file(folder.write("a.log", content));
        follow(source);
        pass(1s);
    }
    void append(const std::string &content) {
        std::ofstream(folder.path("a.log"), std::ios::app) << content;
        pass(1s);
    }

    void selectText(int from, int to) {
        QMetaObject::invokeMethod(editor.get(), "select", Q_ARG(int, from), Q_ARG(int, to));
    }
    [[nodiscard]] std::string selected() const {
        return editor->property("selectedText").toString().toStdString();
    }
    [[nodiscard]] QColor colourOf(int line) const {
        const auto formats = document().findBlockByNumber(line).layout()->formats();
        return formats.isEmpty() ? QColor() : formats.first().format.foreground().color();
    }

    TemporaryFolder folder;
    FakePlatform world;
    QQmlEngine engine;
    QQmlComponent component{&engine};
    std::unique_ptr<QQuickItem> editor;
    std::unique_ptr<LogDocument> log;
};

TEST_F(LogDocumentTest, aNewOneIsEmpty) {
    EXPECT_TRUE(log->isEmpty());
    EXPECT_FALSE(log->isFollowing());
    EXPECT_FALSE(log->isPaused());
    EXPECT_EQ(shown(), "");
}

TEST_F(LogDocumentTest, aFileThatGrowsIsFollowed) {
    write("one\ntwo\n");
    EXPECT_TRUE(log->isFollowing());
    EXPECT_FALSE(log->isEmpty());
    EXPECT_EQ(shown(), "one\ntwo");
    append("three\n");
    EXPECT_EQ(shown(), "one\ntwo\nthree");
    append("four");
    EXPECT_EQ(shown(), "one\ntwo\nthree\nfour");
    append(" and a half\n\nsix\n");
    EXPECT_EQ(shown(), "one\ntwo\nthree\nfour and a half\n\nsix");
}

TEST_F(LogDocumentTest, linesThatLeaveTheHeadOfALongLogGo) {
    std::string content;
    for (int line = 0; line < 400; ++line)
        content += "line " + std::to_string(line) + "\n";
    write(content);
    const int before = document().blockCount();
    append("one more\nand another\n");
    EXPECT_EQ(document().blockCount(), before);
    EXPECT_EQ(document().firstBlock().text().toStdString(), "line 3");
    EXPECT_EQ(document().lastBlock().text().toStdString(), "and another");
    EXPECT_EQ(QString::fromStdString(shown()), log->lines().join(QLatin1Char('\n')));
}

TEST_F(LogDocumentTest, aRotatedFileReplacesTheText) {
    write("old one\nold two\n");
    write("new\n");
    EXPECT_EQ(shown(), "new");
    write("");
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(log->isEmpty());
}

TEST_F(LogDocumentTest, aFileThatGoesLeavesNothing) {
    write("one\n");
    std::filesystem::remove(folder.path("a.log"));
    pass(1s);
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(log->isFollowing()) << "it may come back";
    write("two\n");
    EXPECT_EQ(shown(), "two");
}

TEST_F(LogDocumentTest, blankLinesAreNoOutput) {
    write("\n\n\n");
    EXPECT_TRUE(log->isEmpty());
    append("x\n");
    EXPECT_FALSE(log->isEmpty());
}

TEST_F(LogDocumentTest, aSelectionSurvivesNewLines) {
    write("one\ntwo\nthree\n");
    selectText(4, 7);
    ASSERT_EQ(selected(), "two");
    append("four\n");
    EXPECT_EQ(selected(), "two");
    EXPECT_EQ(shown(), "one\ntwo\nthree\nfour");
}

TEST_F(LogDocumentTest, aSelectionSurvivesALineThatIsWrittenBitByBit) {
    write("one\ntwo\nthr");
    selectText(4, 7);
    append("ee");
    EXPECT_EQ(selected(), "two");
    append("\nfour\n");
    EXPECT_EQ(selected(), "two");
    EXPECT_EQ(shown(), "one\ntwo\nthree\nfour");
}

TEST_F(LogDocumentTest, aSelectionMovesWithItsLines) {
    std::string content;
    for (int line = 0; line < 400; ++line)
        content += std::to_string(100 + line) + "\n";
    write(content);
    selectText(40, 43);
    const std::string text = selected();
    append("x\ny\n");
    EXPECT_EQ(selected(), text);
}

TEST_F(LogDocumentTest, whilePausedTheTextStands) {
    write("one\n");
    const ChangeCounter pauses(log.get(), &LogDocument::isPausedChanged);
    log->togglePaused();
    EXPECT_TRUE(log->isPaused());
    append("two\n");
    EXPECT_EQ(shown(), "one");
    log->togglePaused();
    EXPECT_FALSE(log->isPaused());
    pass(1s);
    EXPECT_EQ(shown(), "one\ntwo");
    EXPECT_EQ(pauses.count(), 2);
}

TEST_F(LogDocumentTest, anotherSourceClearsTheTextAtOnce) {
    write("one\n");
    const LogSource other = LogSource::file(folder.write("b.log", "other\n"));
    log->follow(other);
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(log->isEmpty());
    awaitReads();
    EXPECT_EQ(shown(), "other");
    follow(std::nullopt);
    EXPECT_EQ(shown(), "");
    EXPECT_FALSE(log->isFollowing());
    append("two\n");
    EXPECT_EQ(shown(), "");
}

TEST_F(LogDocumentTest, aContainersOutputIsFollowed) {
    world.tools.answers["docker logs --tail 300 web"] = "one\n";
    follow(LogSource::docker("docker", "web"));
    EXPECT_EQ(shown(), "one");
    world.tools.answers["docker logs --tail 300 web"] = "one\ntwo\n";
    pass(3s);
    EXPECT_EQ(shown(), "one\ntwo");
}

TEST_F(LogDocumentTest, aLineWithoutEndIsCut) {
    write(std::string(20'000, 'x') + "\nshort\n");
    EXPECT_LE(document().firstBlock().length(), 2002);
    EXPECT_GE(document().firstBlock().length(), 1900);
    EXPECT_EQ(document().lastBlock().text().toStdString(), "short");
}

TEST_F(LogDocumentTest, controlCharactersAndBrokenTextAreMadePlain) {
    write("\x1b[31mred\x1b[0m\x01 \xff end\ntab\there\n");
    for (QTextBlock block = document().begin(); block.isValid(); block = block.next())
        for (const QChar letter : block.text())
            EXPECT_GE(letter.unicode(), u' ') << block.text().toStdString();
    EXPECT_EQ(document().blockCount(), 2);
    EXPECT_TRUE(document().firstBlock().text().startsWith(QStringLiteral("red")));
}

TEST_F(LogDocumentTest, markupIsText) {
    write("<b>bold</b> & more\n");
    EXPECT_EQ(shown(), "<b>bold</b> & more");
}

TEST_F(LogDocumentTest, linesHaveTheColourOfWhatTheySay) {
    log->setProperty("ink", QColor(Qt::white));
    log->setProperty("warning", QColor(Qt::yellow));
    log->setProperty("error", QColor(Qt::red));
    write("GET / 200\nwarning: old\nError: gone\n");
    EXPECT_EQ(colourOf(0), QColor(Qt::white));
    EXPECT_EQ(colourOf(1), QColor(Qt::yellow));
    EXPECT_EQ(colourOf(2), QColor(Qt::red));
    append("another error\n");
    EXPECT_EQ(colourOf(3), QColor(Qt::red));
    log->setProperty("error", QColor(Qt::magenta));
    settle();
    EXPECT_EQ(colourOf(2), QColor(Qt::magenta));
}

TEST_F(LogDocumentTest, aDocumentThatComesLaterShowsWhatIsThere) {
    log->setDocument(nullptr);
    write("one\ntwo\n");
    EXPECT_EQ(shown(), "");
    log->setDocument(quickDocument());
    EXPECT_EQ(shown(), "one\ntwo");
    append("three\n");
    EXPECT_EQ(shown(), "one\ntwo\nthree");
}

TEST_F(LogDocumentTest, anEditorThatGoesTakesNothingWithIt) {
    write("one\n");
    editor.reset();
    append("two\n");
    EXPECT_EQ(log->document(), nullptr);
    EXPECT_EQ(log->lines().join(QLatin1Char('\n')), QStringLiteral("one\ntwo"));
}

} // namespace
} // namespace tarnvale
