#include "probes/Health.h"

namespace tarnvale {

std::string Health::summary() const {
    switch (kind) {
    case Kind::responding:
        return "Responds (HTTP " + std::to_string(code) + ")";
    case Kind::serverError:
        return "Server error (HTTP " + std::to_string(code) + ")";
    case Kind::noResponse:
        return "No response within 1.5s";
    case Kind::unknown:
        break;
    }
    return "Not HTTP or unknown";
}

} // namespace tarnvale
