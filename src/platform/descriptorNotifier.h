#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tarnvale {

/// Silent at once, gone when its own signal, from which this may be called, has been dealt with.
struct SilenceAndDelete {
    void operator()(QSocketNotifier *notifier) const {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
};

/// Calls something on the thread that made it whenever a descriptor is readable. Let go of it before the
/// descriptor is closed.
using DescriptorNotifier = std::unique_ptr<QSocketNotifier, SilenceAndDelete>;

template<typename Call> [[nodiscard]] DescriptorNotifier whenReadable(int descriptor, Call call) {
    DescriptorNotifier notifier(new QSocketNotifier(descriptor, QSocketNotifier::Read));
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), std::move(call));
    return notifier;
}

} // namespace tarnvale
