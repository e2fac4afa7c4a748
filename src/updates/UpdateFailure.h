#pragma once

#include <QString>

#include <cstdint>

namespace tarnvale {

/// Why there is no update. What a server said of it is never shown.
struct UpdateFailure {
    enum class Kind : std::uint8_t {
        cancelled,    ///< by the user
        unreachable,  ///< no connection, or it was lost
        insecure,     ///< no HTTPS, also after a redirection, or a certificate that isn't trusted
        badAnswer,    ///< a status other than 200, or no HTTP
        timedOut,     ///< nothing came for too long
        tooLarge,     ///< more came, or was announced, than may
        cutShort,     ///< less came than was announced
        cannotSave,   ///< `detail` says why, in the user's language
        noRoom,       ///< on the disk, for the download
        badFeed,      ///< what came is no feed
        badSignature, ///< the file isn't what the maker signed
        changed,      ///< the file is no longer the one that was checked
    };

    Kind kind = Kind::unreachable;
    QString detail;

    bool operator==(const UpdateFailure &) const = default;
};

/// One sentence that tells the user what went wrong.
[[nodiscard]] QString sentence(const UpdateFailure &failure);

} // namespace tarnvale
