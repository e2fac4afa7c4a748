#pragma once

#include "store/PortStore.h"

#include <utility>

namespace tarnvale {

/// Gives `field` a value, and tells of it only when that is another one.
template<typename Field> void PortStore::set(Field &field, Field value, void (PortStore::*changed)()) {
    if (field == value)
        return;
    field = std::move(value);
    Q_EMIT(this->*changed)();
}

} // namespace tarnvale
