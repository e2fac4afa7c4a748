#include "updates/PartialFile.h"

#include "platform/errorText.h"
#include "updates/safeFileName.h"

#include <QDir>

#include <cerrno>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace tarnvale {

namespace {

constexpr int mostNumbers = 100; ///< files of one name beside each other

std::unexpected<UpdateFailure> cannotSave(const QString &path, const QString &reason) {
    return std::unexpected(
        UpdateFailure{UpdateFailure::Kind::cannotSave, path + QStringLiteral(": ") + reason});
}

QString pathIn(const QString &folder, const QString &name) {
    return folder + QLatin1Char('/') + name;
}

bool isTaken(const QString &path) {
    const QFileInfo item(path);
    return item.exists() || item.isSymLink(); // a link that leads nowhere doesn't "exist"
}

bool hasRoom(const QString &folder, std::int64_t length) {
    std::error_code error; // a disk that doesn't tell may have it
    const auto space = std::filesystem::space(QFile::encodeName(folder).toStdString(), error);
    return error || std::cmp_greater_equal(space.available, length);
}

} // namespace

std::expected<std::shared_ptr<PartialFile>, UpdateFailure>
PartialFile::create(const QString &folder, const QString &name, std::int64_t length) {
    if (!QDir().mkpath(folder))
        return cannotSave(folder, QString::fromStdString(errorText(errno)));
    if (!hasRoom(folder, length))
        return std::unexpected(UpdateFailure{UpdateFailure::Kind::noRoom, {}});
    std::shared_ptr<PartialFile> part(new PartialFile(folder, name));
    QFile &file = part->m_file;
    for (int number = 0; number < mostNumbers; ++number) {
        const QString path = pathIn(folder, numberedName(name, number)) + QStringLiteral(".part");
        file.setFileName(path);
        // Unbuffered, so that a full disk shows at once.
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                      QFile::ReadOwner | QFile::WriteOwner)) {
            part->m_path = path;
            return part;
        }
        if (!isTaken(path))
            break;
    }
    return cannotSave(file.fileName(), file.errorString());
}

PartialFile::~PartialFile() {
    discard();
}

void PartialFile::discard() {
    if (const QString path = std::exchange(m_path, {}); !path.isEmpty())
        QFile::remove(path);
}

std::expected<void, UpdateFailure> PartialFile::write(const QByteArray &bytes) {
    if (m_file.write(bytes) != bytes.size())
        return cannotSave(m_path, m_file.errorString());
    m_size += bytes.size();
    return {};
}

std::expected<void, UpdateFailure> PartialFile::close() {
    if (m_file.isOpen() && fsync(m_file.handle()) != 0)
        return cannotSave(pathIn(m_folder, m_name), QString::fromStdString(errorText(errno)));
    m_file.close();
    return {};
}

std::expected<QString, UpdateFailure> PartialFile::finish() {
    if (const auto closed = close(); !closed)
        return std::unexpected(closed.error());
    for (int number = 0; number < mostNumbers; ++number) {
        const QString path = pathIn(m_folder, numberedName(m_name, number));
        if (isTaken(path))
            continue;
        if (m_file.rename(path)) {
            m_path.clear();
            return path;
        }
        break;
    }
    return cannotSave(m_path, m_file.errorString());
}

} // namespace tarnvale
