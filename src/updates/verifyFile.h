#pragma once

#include <QString>

#include <string>

namespace tarnvale {

/// Whether `signature` is that of `publicKey` over all bytes of the file at `path`: Ed25519 (RFC 8032, not
/// the pre-hashed kind), both in Base64. False also when one of them has another form or length, and when the
/// file is empty, no regular file, larger than `mostUpdateBytes`, or can't be read.
///
/// Takes seconds for a large file: for a background thread. Nobody may shorten the file meanwhile.
[[nodiscard]] bool verifyFile(const QString &path, const std::string &signature,
                              const std::string &publicKey);

/// Whether `signature` could be one: Base64 of 64 bytes.
[[nodiscard]] bool isSignature(const std::string &signature);

} // namespace tarnvale
