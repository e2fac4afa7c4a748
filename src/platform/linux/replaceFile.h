#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <optional>
#include <string>

namespace tarnvale {

/// The content of the regular file at `path`; empty when there is nothing at that path. Nothing when it is
/// another kind of file, has more than `limit` bytes or can't be read. Never waits for a writer.
[[nodiscard]] std::optional<QByteArray> readRegularFile(const QString &path, qint64 limit);

/// Writes the file at `path` anew, with the folders above it. Whoever reads it meanwhile, or after a crash,
/// finds the old content or the new one, never a part. A symbolic link stays one, and its target is written.
/// A new file is readable by its owner alone; an old one keeps its permissions.
///
/// The error is a description for the user; the file is then as it was.
[[nodiscard]] std::expected<void, std::string> replaceFile(const QString &path, const QByteArray &content);

} // namespace tarnvale
