#include "presentation/pages/PagesTest.h"

#include "store/settingsKeys.h"
#include "store/storedJson.h"

namespace tarnvale {

using namespace std::chrono_literals;

void PagesTest::addEvents(const std::vector<PortEvent> &events) {
    world.settings.values[keys::events] = encodeEvents(events);
}

void PagesTest::addEvents(int count) {
    std::vector<PortEvent> events;
    for (int number = 0; number < count; ++number)
        events.push_back(eventOf("shop", 3000 + number, number % 2 == 0, number * 1min));
    addEvents(events);
}

void PagesTest::addStacks(const std::vector<Stack> &stacks) {
    world.settings.values[keys::stacks] = encodeStacks(stacks);
}

QString PagesTest::idOf(const Stack &stack) {
    return stack.id.toString(QUuid::WithoutBraces);
}

QVariant PagesTest::role(const QAbstractItemModel *model, int row, const char *role) {
    return model->data(model->index(row, 0), model->roleNames().key(role, -1));
}

std::vector<std::string> PagesTest::texts(const QAbstractItemModel *model, const char *name) {
    std::vector<std::string> result;
    for (int row = 0; row < model->rowCount(); ++row)
        result.push_back(role(model, row, name).toString().toStdString());
    return result;
}

Stack stackOf(const std::string &name, const std::vector<std::string> &commands, const std::string &folder) {
    Stack stack{.id = QUuid::createUuid(), .name = name, .commands = {}};
    for (const std::string &command : commands)
        stack.commands.push_back({command, folder});
    return stack;
}

PortEvent eventOf(const std::string &name, std::int64_t port, bool isStart, std::chrono::minutes ago) {
    return {.id = QUuid::createUuid(),
            .date = ManualClock().now() - ago,
            .port = port,
            .otherPorts = {},
            .pid = 42,
            .name = name,
            .started = isStart};
}

} // namespace tarnvale
