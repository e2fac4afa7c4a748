#pragma once

#include "store/PortStore.h"
#include "support/FakePlatform.h"

#include <QCoroTask>
#include <QPromise>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace tarnvale {

/// A store on a fake system, with a clock that only the test moves.
class StoreTest : public testing::Test {
protected:
    StoreTest();
    ~StoreTest() override;

    /// Creates the store and waits for its first scan.
    void start();
    /// One scan more.
    void scan();
    /// Lets time pass, and whatever happens in it.
    void pass(std::chrono::milliseconds time);
    /// Lets time pass until a flow has come to its end.
    void finish(QCoro::Task<> flow);
    /// Lets everything happen that needs no time.
    void quiesce();

    /// A server in a project folder, that listens on `port`.
    void addServer(Pid pid, std::int64_t port, const std::string &args = "node server.js",
                   const std::string &folder = "/home/me/shop");
    /// The record of a port in the latest scan.
    [[nodiscard]] ListeningPort record(std::int64_t port) const;
    [[nodiscard]] std::vector<std::int64_t> listed() const;
    [[nodiscard]] std::string error() const;

    FakePlatform world;
    /// What the probe answers, by port; nothing for those that never answer.
    std::map<std::int64_t, HealthCheck::Result> answers;
    /// What was probed: port, path, time limit in milliseconds.
    std::vector<std::tuple<std::int64_t, std::string, std::int64_t>> probed;
    std::vector<std::shared_ptr<QPromise<HealthCheck::Result>>> unanswered;
    std::unique_ptr<PortStore> store;
};

} // namespace tarnvale
