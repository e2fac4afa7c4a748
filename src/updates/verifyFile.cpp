#include "updates/verifyFile.h"

#include "discovery/FileDescriptor.h"
#include "updates/UpdateItem.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <optional>
#include <sodium.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace tarnvale {

namespace {

/// A whole file as memory that is read from the disk when it is looked at.
class MappedFile {
public:
    explicit MappedFile(const QString &path) {
        const FileDescriptor file(
            open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        struct stat status {};
        if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
            status.st_size < 1 || status.st_size > mostUpdateBytes)
            return;
        const auto size = static_cast<std::size_t>(status.st_size);
        void *start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
        if (start == MAP_FAILED)
            return;
        m_start = start;
        m_size = size;
        madvise(m_start, m_size, MADV_SEQUENTIAL);
    }
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;
    ~MappedFile() {
        if (m_start != nullptr)
            munmap(m_start, m_size);
    }

    /// Null when the file can't be read.
    [[nodiscard]] const unsigned char *data() const { return static_cast<const unsigned char *>(m_start); }
    [[nodiscard]] std::size_t size() const { return m_size; }

private:
    void *m_start = nullptr;
    std::size_t m_size = 0;
};

std::optional<QByteArray> decoded(const std::string &base64, std::size_t length) {
    constexpr std::size_t longest = 128;
    if (base64.size() > longest)
        return std::nullopt;
    const auto result = QByteArray::fromBase64Encoding(QByteArray::fromStdString(base64).trimmed(),
                                                       QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray &bytes = *result;
    return result && static_cast<std::size_t>(bytes.size()) == length ? std::optional(bytes) : std::nullopt;
}

const unsigned char *unsignedData(const QByteArray &bytes) {
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

} // namespace

bool isSignature(const std::string &signature) {
    return decoded(signature, crypto_sign_BYTES).has_value();
}

bool verifyFile(const QString &path, const std::string &signature, const std::string &publicKey) {
    const auto signatureBytes = decoded(signature, crypto_sign_BYTES);
    const auto keyBytes = decoded(publicKey, crypto_sign_PUBLICKEYBYTES);
    if (!signatureBytes || !keyBytes || sodium_init() < 0)
        return false;
    const MappedFile file(path);
    return file.data() != nullptr && crypto_sign_verify_detached(unsignedData(*signatureBytes), file.data(),
                                                                 file.size(), unsignedData(*keyBytes)) == 0;
}

} // namespace tarnvale
