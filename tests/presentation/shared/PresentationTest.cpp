#include "presentation/shared/PresentationTest.h"

namespace tarnvale {

void PresentationTest::answerAll() {
    constexpr std::int64_t database = 5432;
    for (const FakeSocket &socket : world.machine.sockets)
        answers.try_emplace(
            socket.port,
            HealthCheck::Result{socket.port == database ? Health::unknown() : Health::responding(200), {}});
}

void PresentationTest::scan() {
    answerAll();
    StoreTest::scan();
}

void PresentationTest::addPostgres(Pid pid) {
    world.machine.add({.pid = pid,
                       .path = "/usr/lib/postgresql/15/bin/postgres",
                       .args = "postgres -D data",
                       .cwd = "/var/lib/postgresql"});
    world.machine.listen(pid, 5432);
}

void PresentationTest::addAgentsServer(Pid pid, std::int64_t port) {
    constexpr Pid editor = 20;
    constexpr Pid agent = 21;
    world.machine.add({.pid = editor,
                       .path = "/usr/bin/editor",
                       .args = "editor",
                       .application = "/usr/share/applications/Some Editor.desktop"});
    world.machine.add({.pid = agent, .ppid = editor, .path = "/usr/bin/claude", .args = "claude"});
    world.machine.add({.pid = pid,
                       .ppid = agent,
                       .path = "/usr/bin/node",
                       .args = "node server.js",
                       .cwd = "/home/me/api"});
    world.machine.listen(pid, port);
}

void PresentationTest::addContainer(Pid pid, std::int64_t port, const std::string &name) {
    world.machine.add({.pid = pid, .path = "/usr/bin/docker-proxy", .args = "docker-proxy", .cwd = "/"});
    world.machine.listen(pid, port);
    world.machine.publishedPorts[port] = name;
}

QString PresentationTest::id(std::int64_t port) const {
    return QString::fromStdString(record(port).id());
}

std::vector<std::string> PresentationTest::texts(const QAbstractItemModel *model, const char *role) {
    const int number = model->roleNames().key(role, -1);
    std::vector<std::string> result;
    for (int row = 0; row < model->rowCount(); ++row)
        result.push_back(model->data(model->index(row, 0), number).toString().toStdString());
    return result;
}

std::vector<Pid> PresentationTest::stopped() const {
    std::vector<Pid> pids;
    for (const auto &signal : world.processes.sent)
        pids.push_back(signal.pid);
    return pids;
}

} // namespace tarnvale
