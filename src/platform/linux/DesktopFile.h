#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tarnvale {

/// The main group of a desktop file, key by key (freedesktop.org, Desktop Entry 1.5).
class DesktopFile {
public:
    /// What isn't of the form is skipped; of a key that stands twice the first counts.
    [[nodiscard]] static DesktopFile parse(std::string_view content);

    [[nodiscard]] bool isTrue(const std::string &key) const { return text(key) == "true"; }
    [[nodiscard]] bool isFalse(const std::string &key) const { return text(key) == "false"; }

    /// The value with its escapes resolved, as valid UTF-8; empty without one.
    [[nodiscard]] std::string text(const std::string &key) const;

    /// The same in the language of `locale`, "language_COUNTRY.ENCODING@MODIFIER" with all but the first left
    /// out at will, or the nearest that there is.
    [[nodiscard]] std::string localized(const std::string &key, std::string_view locale) const;

private:
    std::map<std::string, std::string, std::less<>> m_values; ///< by "key" or "key[locale]", as written
};

/// The locale of the user's messages, as the environment tells it (locale(7)).
[[nodiscard]] std::string messageLocale();

/// `text` as a value in a desktop file.
[[nodiscard]] std::string desktopFileText(std::string_view text);

/// The value of `Exec` that starts the program at `path` without arguments.
[[nodiscard]] std::string execValue(std::string_view path);

} // namespace tarnvale
