#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// A pair of Ed25519 keys of the test's own.
class TestKey {
public:
    TestKey();

    /// In Base64.
    [[nodiscard]] const std::string &publicKey() const { return m_public; }
    /// The signature of `bytes`, in Base64.
    [[nodiscard]] std::string sign(std::string_view bytes) const;

private:
    std::string m_public;
    std::string m_secret; ///< its bytes
};

} // namespace tarnvale
