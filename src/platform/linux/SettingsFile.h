#pragma once

#include "platform/Settings.h"

#include <QByteArray>
#include <QString>

namespace tarnvale {

/// Settings in one text file, a value a line. It is read at each question and replaced as a whole at each
/// change, so what is answered is what is stored. Lines that aren't understood stay as they are.
///
///     watchedPorts=[3000,5173]
///     healthPaths={"3000":"/health"}
///     showWebPreviews=false
///     stacks=@[{"id":"..."}]
///
/// Numbers and texts are JSON; bytes stand behind an "@", those that aren't printable ASCII as %XX.
///
/// The file may be a symbolic link. A file that is there and can't be read is never replaced.
class SettingsFile : public Settings {
public:
    /// `path` is absolute; the folders above it are made when something is written.
    explicit SettingsFile(const std::string &path = standardPath());

    /// "tarnvale/tarnvale.conf" in the user's configuration folder.
    [[nodiscard]] static std::string standardPath();

    [[nodiscard]] std::optional<std::vector<std::int64_t>> integers(const std::string &key) const override;
    [[nodiscard]] std::optional<std::map<std::string, std::string>>
    texts(const std::string &key) const override;
    [[nodiscard]] std::optional<std::string> bytes(const std::string &key) const override;
    [[nodiscard]] std::optional<bool> flag(const std::string &key) const override;

    [[nodiscard]] bool setIntegers(const std::string &key, const std::vector<std::int64_t> &values) override;
    [[nodiscard]] bool setTexts(const std::string &key,
                                const std::map<std::string, std::string> &values) override;
    [[nodiscard]] bool setBytes(const std::string &key, const std::string &value) override;
    [[nodiscard]] bool setFlag(const std::string &key, bool value) override;
    [[nodiscard]] bool remove(const std::string &key) override;

private:
    [[nodiscard]] std::optional<QByteArray> value(const std::string &key) const;
    [[nodiscard]] bool store(const std::string &key, const std::optional<QByteArray> &value) const;

    QString m_path;
};

} // namespace tarnvale
