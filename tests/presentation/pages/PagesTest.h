#pragma once

#include "presentation/pages/OverviewController.h"
#include "store/StoreTest.h"

#include <QAbstractItemModel>

#include <string>
#include <vector>

namespace tarnvale {

/// The state of a page over a store on a fake system.
class PagesTest : public StoreTest {
protected:
    /// `count` events, the newest first, a minute apart, by turns started and stopped.
    void addEvents(int count);
    void addEvents(const std::vector<PortEvent> &events);
    void addStacks(const std::vector<Stack> &stacks);

    [[nodiscard]] static QString idOf(const Stack &stack);
    /// A role of every row of a model.
    [[nodiscard]] static std::vector<std::string> texts(const QAbstractItemModel *model, const char *role);
    [[nodiscard]] static QVariant role(const QAbstractItemModel *model, int row, const char *role);
};

/// A stack whose commands all run in one folder.
[[nodiscard]] Stack stackOf(const std::string &name, const std::vector<std::string> &commands,
                            const std::string &folder = "/home/me/shop");

/// An event `ago` before noon of the first of March, 2025.
[[nodiscard]] PortEvent eventOf(const std::string &name, std::int64_t port, bool isStart,
                                std::chrono::minutes ago);

} // namespace tarnvale
