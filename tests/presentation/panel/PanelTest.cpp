#include "presentation/panel/PanelTest.h"

namespace tarnvale {

void PanelTest::startList() {
    start();
    list = std::make_unique<PortListController>(*store, world.platform());
}

void PanelTest::open() {
    answerAll();
    store->setMenuOpen(true);
    quiesce();
}

void PanelTest::close() {
    store->setMenuOpen(false);
    quiesce();
}

void PanelTest::update() {
    scan();
    list->prepare();
}

std::vector<std::string> PanelTest::shown() const {
    std::vector<std::string> ports;
    for (const std::string &id : texts(list->rows(), "rowId"))
        ports.push_back(id.substr(id.find(':') + 1));
    return ports;
}

std::vector<std::string> PanelTest::chips() const {
    std::vector<std::string> titles;
    for (const int chip : list->chips())
        titles.push_back(list->chipTitle(chip).toStdString());
    return titles;
}

bool PanelTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    return list->handleKey(key, static_cast<int>(modifiers.toInt()));
}

} // namespace tarnvale
