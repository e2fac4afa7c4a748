#pragma once

#include "presentation/panel/PortListController.h"
#include "store/StoreTest.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// The state of the panel's list over a store on a fake system.
class PanelTest : public StoreTest {
protected:
    /// Creates the store, waits for its first scan, and makes the list.
    void startList();
    void open();
    void close();
    /// One scan more, with an answer from every port that has none written down.
    void scan();
    /// The same, as far as the list shows it.
    void update();

    void addPostgres(Pid pid = 50);
    /// A process that an agent started, with a window of an editor above both.
    void addAgentsServer(Pid pid, std::int64_t port);
    void addContainer(Pid pid, std::int64_t port, const std::string &name);

    /// The id of the row whose first port that is.
    [[nodiscard]] QString id(std::int64_t port) const;
    /// The first ports of the rows, from the top on.
    [[nodiscard]] std::vector<std::string> shown() const;
    /// The titles of the chips.
    [[nodiscard]] std::vector<std::string> chips() const;
    /// A role of every row of a model.
    [[nodiscard]] static std::vector<std::string> texts(const QAbstractItemModel *model, const char *role);

    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// The processes that were told to end.
    [[nodiscard]] std::vector<Pid> stopped() const;

    std::unique_ptr<PortListController> list;

private:
    void answerAll();
};

} // namespace tarnvale
