#pragma once

#include "presentation/shared/QmlWarnings.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include <memory>
#include <string>

namespace tarnvale {

/// A window with one part of the design in it, and every warning that comes of it.
class QmlPage {
public:
    /// `body` is what follows the imports.
    explicit QmlPage(const std::string &body);
    QmlPage(const QmlPage &) = delete;
    QmlPage &operator=(const QmlPage &) = delete;
    ~QmlPage();

    [[nodiscard]] QQuickItem *root() const { return m_view.rootObject(); }
    [[nodiscard]] QQuickItem *find(const char *objectName) const;
    [[nodiscard]] QQuickWindow &window() { return m_view; }
    [[nodiscard]] QQmlEngine &engine() { return *m_view.engine(); }

    /// A property of the theme.
    [[nodiscard]] QVariant theme(const char *name);

    /// What went wrong so far, one a line; empty when all is well.
    [[nodiscard]] std::string warnings() const { return m_warnings.text(); }

private:
    QmlWarnings m_warnings;
    QQuickView m_view;
    std::unique_ptr<QQmlComponent> m_component;
};

} // namespace tarnvale
