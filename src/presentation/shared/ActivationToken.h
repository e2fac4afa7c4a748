#pragma once

#include <QString>
#include <QtGlobal>

namespace tarnvale {

/// The desktop's leave to come to the front (xdg-activation), in force for the windows that are shown while
/// this object lives: Qt takes it from the environment. An empty one changes nothing.
class ActivationToken {
public:
    explicit ActivationToken(const QString &token) : m_isGiven(!token.isEmpty()) {
        if (m_isGiven)
            qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    ActivationToken(const ActivationToken &) = delete;
    ActivationToken &operator=(const ActivationToken &) = delete;
    ~ActivationToken() {
        if (m_isGiven)
            qunsetenv("XDG_ACTIVATION_TOKEN");
    }

private:
    bool m_isGiven;
};

} // namespace tarnvale
