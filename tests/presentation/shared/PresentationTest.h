#pragma once

#include "store/StoreTest.h"

#include <QAbstractItemModel>

#include <string>
#include <vector>

namespace tarnvale {

/// A store on a fake system with what screens have to show.
class PresentationTest : public StoreTest {
protected:
    /// One scan more, with an answer from every port that has none written down.
    void scan();
    void answerAll();

    void addPostgres(Pid pid = 50);
    /// A process that an agent started, with a window of an editor above both.
    void addAgentsServer(Pid pid, std::int64_t port);
    void addContainer(Pid pid, std::int64_t port, const std::string &name);

    /// The id of the row whose first port that is.
    [[nodiscard]] QString id(std::int64_t port) const;
    /// A role of every row of a model.
    [[nodiscard]] static std::vector<std::string> texts(const QAbstractItemModel *model, const char *role);
    /// The processes that were told to end.
    [[nodiscard]] std::vector<Pid> stopped() const;
};

} // namespace tarnvale
