#include "platform/linux/DesktopFile.h"

#include "discovery/text.h"

#include <cstdlib>

namespace tarnvale {

namespace {

std::string_view withoutBlanksAtEnd(std::string_view text) {
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

char unescaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

/// The names under which a value for `locale` may stand, best first.
std::vector<std::string> namesOf(std::string_view locale) {
    const std::string modifier(locale.substr(std::min(locale.find('@'), locale.size())));
    const std::string region(locale.substr(0, locale.find_first_of(".@")));
    const std::string language = region.substr(0, region.find('_'));
    return {region + modifier, region, language + modifier, language};
}

} // namespace

// Sample:
//   [Desktop Entry]
//   Name=Files
//   Name[de]=Dateien
DesktopFile DesktopFile::parse(std::string_view content) {
    DesktopFile file;
    bool isMainGroup = false;
    for (std::string_view line : nonEmptyLines(content)) {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.starts_with('['))
            isMainGroup = withoutBlanksAtEnd(line) == "[Desktop Entry]";
        const std::size_t equals = line.find('=');
        if (!isMainGroup || equals == line.npos || line.starts_with('#'))
            continue;
        std::string_view value = line.substr(equals + 1);
        value.remove_prefix(leadingWhitespace(value));
        file.m_values.try_emplace(std::string(withoutBlanksAtEnd(line.substr(0, equals))),
                                  withoutBlanksAtEnd(value));
    }
    return file;
}

std::string DesktopFile::text(const std::string &key) const {
    const auto found = m_values.find(key);
    if (found == m_values.end())
        return {};
    std::string resolved;
    const std::string &raw = found->second;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const bool isEscape = raw[i] == '\\' && i + 1 < raw.size();
        resolved += isEscape ? unescaped(raw[++i]) : raw[i];
    }
    return repairedUtf8(resolved);
}

std::string DesktopFile::localized(const std::string &key, std::string_view locale) const {
    for (const std::string &name : namesOf(locale))
        if (std::string found = text(std::string(key).append("[").append(name).append("]")); !found.empty())
            return found;
    return text(key);
}

std::string messageLocale() {
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char *value = std::getenv(variable); value != nullptr && *value != '\0')
            return value;
    return "C";
}

std::string desktopFileText(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        if (letter == '\\')
            escaped += "\\\\";
        else if (letter == '\n')
            escaped += "\\n";
        else if (letter == '\r')
            escaped += "\\r";
        else if (letter == '\t')
            escaped += "\\t";
        else if (letter == ' ' && escaped.empty())
            escaped += "\\s";
        else
            escaped += letter;
    }
    return escaped;
}

std::string execValue(std::string_view path) {
    // Quoting comes first, the escapes of every value second: a "$" ends as "\\$".
    std::string quoted = "\"";
    for (const char letter : path) {
        if (std::string_view("\"`$\\").find(letter) != std::string_view::npos)
            quoted += '\\';
        quoted += letter;
        if (letter == '%')
            quoted += '%';
    }
    quoted += '"';
    const bool isPlain = path.find_first_of(" \t\n\"'\\><~|&;$*?#()`%") == path.npos;
    return desktopFileText(isPlain ? path : std::string_view(quoted));
}

} // namespace tarnvale
