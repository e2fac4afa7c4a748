#pragma once

#include "updates/UpdateFailure.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <expected>
#include <memory>

namespace tarnvale {

/// A download on its way: a file that is readable by its user alone and whose name ends in ".part". Unless it
/// is finished, it goes with this object.
class PartialFile {
public:
    /// In `folder`, which is made if need be; its name comes of `name` and is nobody else's. The failure is
    /// `noRoom` when the disk has less than `length` bytes left, else `cannotSave`.
    [[nodiscard]] static std::expected<std::shared_ptr<PartialFile>, UpdateFailure>
    create(const QString &folder, const QString &name, std::int64_t length);

    PartialFile(const PartialFile &) = delete;
    PartialFile &operator=(const PartialFile &) = delete;
    ~PartialFile();

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] std::int64_t size() const { return m_size; }

    /// Adds `bytes` at the end.
    [[nodiscard]] std::expected<void, UpdateFailure> write(const QByteArray &bytes);
    /// Nothing more comes; what was written is on the disk then, which may take long. On any thread.
    [[nodiscard]] std::expected<void, UpdateFailure> close();
    /// Gives the file its name, or one with a number where that is taken, and leaves it there; its path.
    [[nodiscard]] std::expected<QString, UpdateFailure> finish();
    /// Takes the file away already now, whoever still reads it.
    void discard();

private:
    PartialFile(QString folder, QString name) : m_folder(std::move(folder)), m_name(std::move(name)) {}

    QString m_folder;
    QString m_name;
    QString m_path; ///< empty: there is no file of ours
    QFile m_file;
    std::int64_t m_size = 0;
};

} // namespace tarnvale
