#pragma once

#include "updates/UpdateFailure.h"
#include "updates/UpdateItem.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tarnvale {

/// How far the update has come.
struct UpdateState {
    enum class Phase : std::uint8_t {
        idle,        ///< nobody has asked
        checking,    ///< the feed is on its way
        upToDate,    ///< there is nothing newer
        available,   ///< `item` is newer
        downloading, ///< `received` of its bytes have come
        verifying,   ///< the signature is being checked
        ready,       ///< it is at `file`
        failed,      ///< `failure` tells why; with an `item`, it was its download
    };

    Phase phase = Phase::idle;
    std::optional<UpdateItem> item = std::nullopt;
    std::int64_t received = 0;
    QString file = {};
    UpdateFailure failure = {};
};

} // namespace tarnvale
