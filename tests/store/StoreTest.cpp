#include "store/StoreTest.h"

#include "platform/background.h"

#include <algorithm>

namespace tarnvale {

StoreTest::StoreTest() {
    world.clock.afterStep = [this] { quiesce(); };
}

StoreTest::~StoreTest() {
    store.reset();
    for (const auto &promise : unanswered) {
        promise->addResult(HealthCheck::Result{Health::unknown(), {}});
        promise->finish();
    }
    world.clock.afterStep = settle;
}

void StoreTest::start() {
    const auto probe = [this](std::int64_t port, const std::string &path, std::chrono::milliseconds timeout) {
        probed.emplace_back(port, path, timeout.count());
        auto promise = std::make_shared<QPromise<HealthCheck::Result>>();
        promise->start();
        if (const auto answer = answers.find(port); answer != answers.end()) {
            promise->addResult(answer->second);
            promise->finish();
        } else {
            unanswered.push_back(promise);
        }
        return promise->future();
    };
    store = std::make_unique<PortStore>(world.platform(), probe);
    quiesce();
    ASSERT_TRUE(store->hasScanned());
}

void StoreTest::scan() {
    finish(store->refresh());
}

void StoreTest::pass(std::chrono::milliseconds time) {
    quiesce(); // what is under way on other threads reads the machine
    world.pass(time);
}

void StoreTest::finish(QCoro::Task<> flow) {
    using namespace std::chrono_literals;
    quiesce();
    for (int steps = 0; !flow.isReady() && steps < 1000; ++steps)
        pass(50ms);
    ASSERT_TRUE(flow.isReady()) << "the flow never ended";
}

void StoreTest::quiesce() {
    const auto isIdle = [this] { return (!store || !store->isScanning()) && backgroundThreads().isIdle(); };
    do {
        settle();
        ASSERT_TRUE(waitFor(isIdle)) << "something goes on for ever";
        settle();
    } while (!isIdle());
}

void StoreTest::addServer(Pid pid, std::int64_t port, const std::string &args, const std::string &folder) {
    world.machine.add({.pid = pid, .path = "/usr/bin/node", .args = args, .cwd = folder});
    world.machine.listen(pid, port);
}

ListeningPort StoreTest::record(std::int64_t port) const {
    const auto &ports = store->ports();
    const auto found =
        std::find_if(ports.begin(), ports.end(), [&](const ListeningPort &row) { return row.port == port; });
    if (found == ports.end())
        throw std::runtime_error("port " + std::to_string(port) + " isn't listed");
    return *found;
}

std::vector<std::int64_t> StoreTest::listed() const {
    std::vector<std::int64_t> result;
    for (const ListeningPort &port : store->ports())
        result.push_back(port.port);
    return result;
}

std::string StoreTest::error() const {
    return store->error().value_or(QString()).toStdString();
}

} // namespace tarnvale
