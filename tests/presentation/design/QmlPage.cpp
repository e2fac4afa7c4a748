#include "presentation/design/QmlPage.h"

#include "presentation/design/registerDesign.h"

namespace tarnvale {

QmlPage::QmlPage(const std::string &body) {
    registerDesign(engine());
    m_component = std::make_unique<QQmlComponent>(&engine());
    m_component->setData(QByteArray::fromStdString("import QtQuick\nimport Tarnvale.Design\n" + body),
                         QUrl(QStringLiteral("qrc:/page.qml")));
    QObject *root = m_component->create();
    if (root == nullptr) {
        m_warnings.add(m_component->errorString());
        return;
    }
    m_view.setContent(QUrl(), m_component.get(), root);
    m_view.show();
}

QmlPage::~QmlPage() {
    delete m_view.rootObject();
    m_view.releaseResources(); // Qt keeps pictures that nobody shows any more
}

QQuickItem *QmlPage::find(const char *objectName) const {
    return root()->findChild<QQuickItem *>(QLatin1String(objectName));
}

QVariant QmlPage::theme(const char *name) {
    const QObject *theme = designTheme(engine());
    return theme == nullptr ? QVariant() : theme->property(name);
}

} // namespace tarnvale
