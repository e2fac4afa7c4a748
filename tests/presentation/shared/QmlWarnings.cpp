#include "presentation/shared/QmlWarnings.h"

#include <utility>

namespace tarnvale {

namespace {

QmlWarnings *youngest = nullptr;

} // namespace

QmlWarnings::QmlWarnings() : m_outer(youngest) {
    youngest = this;
    m_earlier = m_outer != nullptr ? m_outer->m_earlier : qInstallMessageHandler(note);
}

QmlWarnings::~QmlWarnings() {
    if (m_outer == nullptr)
        qInstallMessageHandler(m_earlier);
    youngest = m_outer;
}

void QmlWarnings::note(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    const bool isOfOffscreen = message.startsWith(QStringLiteral("This plugin does not support"));
    if (type == QtDebugMsg || type == QtInfoMsg || isOfOffscreen)
        return;
    youngest->add(message);
    youngest->m_earlier(type, context, message);
}

void QmlWarnings::add(const QString &message) {
    const std::scoped_lock lock(m_mutex);
    m_messages.append(message);
}

std::string QmlWarnings::text() const {
    const std::scoped_lock lock(m_mutex);
    return m_messages.join(QLatin1Char('\n')).toStdString();
}

std::string QmlWarnings::take() {
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_messages, {}).join(QLatin1Char('\n')).toStdString();
}

} // namespace tarnvale
