#include "presentation/shared/KeyedListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>

namespace tarnvale {
namespace {

struct Row {
    QString id;
    int number = 0;
    QString text = {};
    int unseen = 0;

    [[nodiscard]] QString key() const { return id; }
    [[nodiscard]] static const std::vector<ListRole<Row>> &roles() {
        static const std::vector<ListRole<Row>> all{
            {"number", [](const Row &row) -> QVariant { return row.number; }},
            {"label", [](const Row &row) -> QVariant { return row.text; }},
        };
        return all;
    }

    bool operator==(const Row &) const = default;
};

Row row(const char *id, int number = 0) {
    return {.id = QLatin1String(id), .number = number};
}

class KeyedList : public testing::Test {
protected:
    KeyedListModel<Row> model;
    const QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    const QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    const QSignalSpy inserts{&model, &QAbstractItemModel::rowsInserted};
    const QSignalSpy removals{&model, &QAbstractItemModel::rowsRemoved};
    const QSignalSpy moves{&model, &QAbstractItemModel::rowsMoved};
    const QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
};

TEST_F(KeyedList, hasItsRolesUnderTheirNames) {
    model.setRows({{.id = QStringLiteral("a"), .number = 7, .text = QStringLiteral("seven")}});
    const auto names = model.roleNames();
    ASSERT_EQ(names.size(), 2);
    const QModelIndex first = model.index(0, 0);
    EXPECT_EQ(model.data(first, names.key("number")).toInt(), 7);
    EXPECT_EQ(model.data(first, names.key("label")).toString(), QStringLiteral("seven"));
}

TEST_F(KeyedList, knowsNothingOfOtherRolesAndRows) {
    model.setRows({row("a", 7)});
    const int number = model.roleNames().key("number");
    EXPECT_FALSE(model.data(model.index(0, 0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.data(model.index(0, 0), number + 2).isValid());
    EXPECT_FALSE(model.data(model.index(0, 0), -1).isValid());
    EXPECT_FALSE(model.data({}, number).isValid());
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
}

TEST_F(KeyedList, playsTheDifferences) {
    model.setRows({row("a"), row("b"), row("c")});
    ASSERT_EQ(inserts.count(), 1);
    EXPECT_EQ(inserts.at(0).at(1).toInt(), 0);
    EXPECT_EQ(inserts.at(0).at(2).toInt(), 2);
    model.setRows({row("c"), row("a"), row("d")});
    EXPECT_EQ(removals.count(), 1);
    EXPECT_EQ(moves.count(), 1);
    EXPECT_EQ(inserts.count(), 2);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(KeyedList, tellsOnlyTheRolesThatChanged) {
    model.setRows({row("a", 1), row("b", 2)});
    model.setRows({row("a", 1), row("b", 3)});
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changes.at(0).at(2).value<QList<int>>(), QList<int>{model.roleNames().key("number")});
}

TEST_F(KeyedList, tellsNeighboursTogether) {
    model.setRows({row("a", 1), row("b", 2), row("c", 3), row("d", 4), row("e", 5)});
    Row renamed = row("b", 2);
    renamed.text = QStringLiteral("two");
    model.setRows({row("a", 9), renamed, row("c", 3), row("d", 4), row("e", 9)});
    const int number = model.roleNames().key("number");
    const int label = model.roleNames().key("label");
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes.at(0).at(0).toModelIndex().row(), 0);
    EXPECT_EQ(changes.at(0).at(1).toModelIndex().row(), 1);
    EXPECT_THAT(changes.at(0).at(2).value<QList<int>>(), testing::UnorderedElementsAre(number, label));
    EXPECT_EQ(changes.at(1).at(0).toModelIndex().row(), 4);
    EXPECT_EQ(changes.at(1).at(1).toModelIndex().row(), 4);
    EXPECT_EQ(changes.at(1).at(2).value<QList<int>>(), QList<int>{number});
}

TEST_F(KeyedList, saysNothingOfWhatNoRoleShows) {
    model.setRows({{.id = QStringLiteral("a"), .unseen = 1}});
    model.setRows({{.id = QStringLiteral("a"), .unseen = 2}});
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(model.rows().front().unseen, 2);
}

TEST_F(KeyedList, aPersistentIndexFollowsItsRow) {
    model.setRows({row("a"), row("b"), row("c")});
    const QPersistentModelIndex last(model.index(2, 0));
    model.setRows({row("c"), row("new"), row("a")});
    EXPECT_EQ(last.row(), 0);
    model.setRows({row("a")});
    EXPECT_FALSE(last.isValid());
}

TEST_F(KeyedList, takesAnyListAfterAnyOther) {
    std::mt19937 random(2); // NOLINT(cert-msc51-cpp): the same lists each time
    for (int round = 0; round < 500; ++round) {
        std::vector<Row> rows;
        for (int number = 0; number < 12; ++number)
            if (random() % 2 == 0)
                rows.push_back({.id = QString::number(number), .number = static_cast<int>(random() % 3)});
        std::ranges::shuffle(rows, random);
        model.setRows(rows);
        ASSERT_EQ(model.rows(), rows) << round;
        ASSERT_EQ(model.rowCount(), static_cast<int>(rows.size()));
    }
    EXPECT_EQ(resets.count(), 0);
}

} // namespace
} // namespace tarnvale
