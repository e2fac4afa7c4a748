#include "presentation/palette/PaletteModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>
#include <string>

namespace tarnvale {
namespace {

using testing::ElementsAre;

std::vector<PaletteRow> rowsOf(const std::string &ids) {
    std::vector<PaletteRow> rows;
    for (const char id : ids)
        rows.push_back({.id = QString(QLatin1Char(id)), .title = QStringLiteral("Kill Shop")});
    return rows;
}

std::string idsOf(const PaletteModel &model) {
    std::string ids;
    for (const PaletteRow &row : model.rows())
        ids += row.id.toStdString();
    return ids;
}

TEST(PaletteModel, onlyWhatDiffersComesAndGoes) {
    struct Case {
        std::string before, after;
        std::vector<std::pair<int, int>> removed, inserted; ///< first and last
    };
    const std::vector<Case> cases{
        {"", "abc", {}, {{0, 2}}},
        {"abc", "", {{0, 2}}, {}},
        {"abc", "abc", {}, {}},
        {"abc", "ac", {{1, 1}}, {}},
        {"ac", "abc", {}, {{1, 1}}},
        {"abcd", "axyd", {{1, 2}}, {{1, 2}}},
        {"abc", "xyz", {{0, 2}}, {{0, 2}}},
        {"abc", "bcd", {{0, 2}}, {{0, 2}}},
        {"aa", "a", {{1, 1}}, {}},
        {"a", "aaa", {}, {{1, 2}}},
        {"abcde", "abe", {{2, 3}}, {}},
        {"abc", "abcde", {}, {{3, 4}}},
    };
    for (const Case &each : cases) {
        PaletteModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        model.setRows(rowsOf(each.before));
        std::vector<std::pair<int, int>> removed;
        std::vector<std::pair<int, int>> inserted;
        QObject::connect(
            &model, &QAbstractItemModel::rowsRemoved,
            [&](const QModelIndex &, int first, int last) { removed.emplace_back(first, last); });
        QObject::connect(
            &model, &QAbstractItemModel::rowsInserted,
            [&](const QModelIndex &, int first, int last) { inserted.emplace_back(first, last); });
        model.setRows(rowsOf(each.after));
        EXPECT_EQ(idsOf(model), each.after);
        EXPECT_EQ(removed, each.removed) << each.before << " to " << each.after;
        EXPECT_EQ(inserted, each.inserted) << each.before << " to " << each.after;
    }
}

TEST(PaletteModel, anyListTurnsIntoAnyOther) {
    std::mt19937 random(7);
    PaletteModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int round = 0; round < 300; ++round) {
        std::string ids;
        for (char id = 'a'; id < 'i'; ++id)
            if (random() % 2 == 0)
                ids += id;
        model.setRows(rowsOf(ids));
        ASSERT_EQ(idsOf(model), ids);
    }
}

TEST(PaletteModel, aRowThatReadsOtherwiseStaysTheSameRow) {
    PaletteModel model;
    model.setRows(rowsOf("ab"));
    std::vector<PaletteRow> rows = rowsOf("ab");
    rows[1].title = QStringLiteral("Stop Shop");
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    model.setRows(rows);
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(inserts.count(), 0);
    EXPECT_EQ(model.rows()[1].title, QStringLiteral("Stop Shop"));
}

TEST(PaletteModel, theRolesAreWhatQmlReads) {
    PaletteModel model;
    model.setRows({{.id = QStringLiteral("kill-1:2"),
                    .title = QStringLiteral("Kill Shop"),
                    .subtitle = QStringLiteral("Port 2"),
                    .symbol = QStringLiteral("xmark.octagon"),
                    .tint = QStringLiteral("red")}});
    const auto names = model.roleNames();
    std::vector<std::string> texts;
    for (const char *role : {"itemId", "title", "subtitle", "symbol", "tint", "confirmation"})
        texts.push_back(model.data(model.index(0), names.key(role, -1)).toString().toStdString());
    EXPECT_THAT(texts, ElementsAre("kill-1:2", "Kill Shop", "Port 2", "xmark.octagon", "red",
                                   "Press ↩ again to kill shop"));
    EXPECT_FALSE(model.data(model.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.data(model.index(1), names.key("title")).isValid());
    EXPECT_FALSE(model.data(model.index(0), Qt::UserRole + 100).isValid());
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
}

} // namespace
} // namespace tarnvale
