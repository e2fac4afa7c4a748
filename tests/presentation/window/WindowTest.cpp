#include "presentation/window/WindowTest.h"

namespace tarnvale {

WindowTest::WindowTest()
    : hotKey(std::make_unique<GlobalHotKey>(world.settings, std::make_unique<FakeRegistrar>())),
      m_earlierHome(qgetenv("HOME")) {
    qputenv("HOME", QByteArray::fromStdString(home.path()));
}

WindowTest::~WindowTest() {
    quiesce();
    qputenv("HOME", m_earlierHome);
}

void WindowTest::startView(const WindowActions &actions) {
    start();
    pictures = std::make_unique<PagePictures>(*store, world.platform());
    view = std::make_unique<MainViewController>(*store, world.platform(), *hotKey, *pictures, actions);
}

void WindowTest::look() {
    answerAll();
    store->setWindowVisible(true);
    scan();
}

void WindowTest::lookAway() {
    store->setWindowVisible(false);
    quiesce();
}

void WindowTest::addSites(std::initializer_list<const char *> names) const {
    for (const char *name : names)
        home.write(std::string("sites/") + name + "/index.html", "");
    home.write(".config/valet/config.json", R"({"tld":"test","paths":[")" + home.path("sites") + R"("]})");
}

std::vector<std::string> WindowTest::shown() const {
    return texts(view->ports()->rows(), "rowId");
}

std::vector<std::string> WindowTest::sidebar() const {
    const std::vector<std::string> keys = texts(view->sidebar(), "itemKey");
    const std::vector<std::string> counts = texts(view->sidebar(), "count");
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < keys.size(); ++row)
        rows.push_back(counts[row] == "0" ? keys[row] : keys[row] + " " + counts[row]);
    return rows;
}

} // namespace tarnvale
