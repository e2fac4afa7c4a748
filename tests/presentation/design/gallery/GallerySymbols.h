#pragma once

#include "presentation/design/symbols.h"

#include <QQmlEngine>
#include <QStringList>

namespace tarnvale {

/// The names of all symbols, for a page that shows them.
class GallerySymbols : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QStringList names READ names CONSTANT)
public:
    using QObject::QObject;

    [[nodiscard]] static QStringList names() {
        QStringList names;
        for (const std::string_view name : symbolNames())
            names << QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
        return names;
    }
};

} // namespace tarnvale
