#include "presentation/update/UpdateScene.h"

#include "platform/background.h"
#include "presentation/design/Appearance.h"
#include "presentation/design/ToolTips.h"
#include "presentation/update/registerUpdate.h"

#include <QTest>

namespace tarnvale {

namespace {

QStringList *noted = nullptr;

void noteMessage(QtMsgType type, const QMessageLogContext &, const QString &message) {
    const bool isOfOffscreen = message.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfOffscreen)
        noted->append(message);
}

void collect(QQuickItem *item, std::vector<QQuickItem *> &items) {
    if (!item->isVisible())
        return;
    items.push_back(item);
    const auto children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, items);
}

bool isOfType(const QQuickItem &item, const char *type) {
    const QByteArray name(item.metaObject()->className());
    return name == type || name.startsWith(QByteArray(type) + "_QML");
}

void settleAll() {
    settle();
    backgroundThreads().waitForDone();
    settle();
}

} // namespace

UpdateScene::UpdateScene(bool isDark) {
    noted = &m_warnings;
    m_earlier = qInstallMessageHandler(noteMessage);
    Appearance::instance().setOverride(isDark, true);
    registerUpdate(engine);
    checker = std::make_unique<UpdateChecker>(source, platform.platform(),
                                              UpdateChecker::Self{"1.0", key.publicKey()});
    window = std::make_unique<UpdateWindow>(engine, *checker, QStringLiteral("1.0"));
}

UpdateScene::~UpdateScene() {
    ToolTips::instance().hide();
    window.reset();
    checker.reset();
    settleAll();
    Appearance::instance().setOverride(std::nullopt, std::nullopt);
    qInstallMessageHandler(m_earlier);
    noted = nullptr;
}

FeedItemText UpdateScene::item() const {
    return {.length = static_cast<std::int64_t>(content.size()), .signature = key.sign(content)};
}

void UpdateScene::check() {
    checker->check(CheckReason::user);
    window->show();
    draw();
}

void UpdateScene::answer(const FeedItemText &offered) {
    source.answerFeed(feedOf(offered.text()));
    settleAll();
    draw();
}

void UpdateScene::deliver(const std::string &bytes) {
    source.answerDownload(bytes);
    settleAll();
    draw();
}

QImage UpdateScene::draw() {
    settle();
    QImage picture = window->window() == nullptr ? QImage() : window->window()->grabWindow();
    settle();
    return picture;
}

std::vector<QQuickItem *> UpdateScene::findAll(const char *type) const {
    std::vector<QQuickItem *> items;
    if (window->window() != nullptr)
        collect(window->window()->contentItem(), items);
    std::erase_if(items, [type](const QQuickItem *item) { return !isOfType(*item, type); });
    return items;
}

std::vector<std::string> UpdateScene::buttons() const {
    std::vector<std::string> titles;
    for (const QQuickItem *button : findAll("PushButton"))
        titles.push_back(button->property("title").toString().toStdString());
    return titles;
}

QStringList UpdateScene::texts() const {
    QStringList texts;
    for (const QQuickItem *text : findAll("QQuickText"))
        texts += text->property("text").toString();
    return texts;
}

std::string UpdateScene::focusedTitle() const {
    const QQuickItem *item = window->window() == nullptr ? nullptr : window->window()->activeFocusItem();
    return item == nullptr ? std::string("(none)") : item->property("title").toString().toStdString();
}

void UpdateScene::click(const char *title) {
    for (const char *type : {"PushButton", "LinkButton"})
        for (const QQuickItem *button : findAll(type))
            if (button->property("title").toString() == QLatin1String(title)) {
                const QPointF middle(button->width() / 2, button->height() / 2);
                QTest::mouseClick(window->window(), Qt::LeftButton, {}, button->mapToScene(middle).toPoint());
                settle();
                draw();
                return;
            }
    m_warnings += QStringLiteral("there is no button ") + QLatin1String(title);
}

void UpdateScene::press(Qt::Key code, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window->window(), code, modifiers);
    settle();
    draw();
}

} // namespace tarnvale
