#pragma once

#include "platform/Platform.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarnvale {

class PortStore;
class WebPreviews;

/// The pictures of web servers' front pages, as the user wants to see them. Main thread.
class PagePictures : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window")

    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)

public:
    /// Both outlive this object.
    PagePictures(PortStore &store, const Platform &platform);

    [[nodiscard]] bool isEnabled() const { return m_isEnabled; } ///< the user wants them

    /// A number that tells one picture of `port` from the next; 0 when there is none to show.
    [[nodiscard]] qint64 stamp(int port) const;
    /// The picture itself, decoded anew; null when there is none.
    [[nodiscard]] QImage picture(int port) const;

    /// "Captured 1 min. ago", or what it waits for. A binding that calls this must hear `changed`, too.
    [[nodiscard]] Q_INVOKABLE QString caption(int port) const;
    /// Takes it anew.
    Q_INVOKABLE void refresh(int port);

    /// Reads the user's choice again, and lets ages grow.
    void update();

Q_SIGNALS:
    void changed();

private:
    WebPreviews &m_previews;
    Platform m_platform;
    bool m_isEnabled = false;
};

} // namespace tarnvale
