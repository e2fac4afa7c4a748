#include "updates/TestKey.h"

#include <QByteArray>

#include <array>
#include <sodium.h>
#include <stdexcept>

namespace tarnvale {

namespace {

const unsigned char *unsignedData(std::string_view bytes) {
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

template<std::size_t Size> std::string base64(const std::array<unsigned char, Size> &bytes) {
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), Size).toBase64().toStdString();
}

} // namespace

TestKey::TestKey() {
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> open{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret{};
    if (sodium_init() < 0 || crypto_sign_keypair(open.data(), secret.data()) != 0)
        throw std::runtime_error("there are no random numbers");
    m_public = base64(open);
    m_secret.assign(secret.begin(), secret.end());
}

std::string TestKey::sign(std::string_view bytes) const {
    std::array<unsigned char, crypto_sign_BYTES> signature{};
    crypto_sign_detached(signature.data(), nullptr, unsignedData(bytes), bytes.size(),
                         unsignedData(m_secret));
    return base64(signature);
}

} // namespace tarnvale
