#pragma once

#include "platform/ProcessControl.h"
#include "store/PortStore.h"

namespace tarnvale {

/// The processes behind a port, held from before they are checked, so that what is checked is what is
/// signalled.
struct PortStore::HeldPort {
    std::shared_ptr<HeldProcess> process;
    std::shared_ptr<HeldProcess> worker; ///< null when the port has none
};

} // namespace tarnvale
