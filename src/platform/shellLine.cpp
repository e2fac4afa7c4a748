#include "platform/shellLine.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace tarnvale {

namespace {

constexpr int spareDescriptor = 9; ///< dash takes one digit only, and low ones are in use more often
constexpr std::string_view blanks = " \t";

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isNameCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9');
}

/// The position behind what stands quoted at `begin`, or behind the one character there.
std::size_t behindQuoted(std::string_view text, std::size_t begin) {
    const char quote = text[begin];
    if (quote == '\\')
        return std::min(begin + 2, text.size());
    if (quote != '\'' && quote != '"')
        return begin + 1;
    for (std::size_t i = begin + 1; i < text.size(); ++i) {
        if (text[i] == quote)
            return i + 1;
        if (text[i] == '\\' && quote == '"')
            ++i;
    }
    return text.size();
}

/// The "&" at `position` belongs to a redirection ("2>&1", "&>all").
bool isRedirection(std::string_view text, std::size_t position) {
    const bool isBehind = position > 0 && (text[position - 1] == '>' || text[position - 1] == '<');
    return isBehind || text.substr(position + 1).starts_with('>');
}

/// More than one command, or one inside another.
bool isCompound(std::string_view command) {
    constexpr std::string_view separators = ";|()`\n";
    for (std::size_t i = 0; i < command.size(); i = behindQuoted(command, i)) {
        if (separators.find(command[i]) != separators.npos)
            return true;
        if (command[i] == '&' && !isRedirection(command, i))
            return true;
    }
    return false;
}

std::size_t endOfWord(std::string_view text, std::size_t begin) {
    while (begin < text.size() && blanks.find(text[begin]) == blanks.npos)
        begin = behindQuoted(text, begin);
    return begin;
}

std::size_t skipBlanks(std::string_view text, std::size_t begin) {
    return std::min(text.find_first_not_of(blanks, begin), text.size());
}

bool isAssignment(std::string_view word) {
    const auto end = std::find_if_not(word.begin(), word.end(), isNameCharacter);
    const auto rest = word.substr(static_cast<std::size_t>(end - word.begin()));
    return end != word.begin() && isLetter(word.front()) && (rest.starts_with('=') || rest.starts_with("+="));
}

/// Words that shells understand themselves, so that there may be no program of that name.
bool isShellsOwn(std::string_view word) {
    static constexpr std::array<std::string_view, 24> own{
        "!",    ".",      "[[",     "alias",  "and",    "builtin", "cd",    "command",
        "eval", "exec",   "export", "if",     "noglob", "not",     "or",    "nocorrect",
        "set",  "setopt", "shopt",  "source", "time",   "ulimit",  "umask", "{"};
    return std::find(own.begin(), own.end(), word) != own.end();
}

} // namespace

ShellLine shellLine(std::string_view command, ShellKind kind) {
    const std::size_t begin = skipBlanks(command, 0);
    std::size_t word = begin;
    std::size_t end = endOfWord(command, word);
    while (word < end && isAssignment(command.substr(word, end - word))) {
        word = skipBlanks(command, end);
        end = endOfWord(command, word);
    }
    const bool hasWord = word < end;
    if (!hasWord || isCompound(command) || isShellsOwn(command.substr(word, end - word)))
        return {.text = std::string(command), .replacesShell = false};
    const std::string variables(command.substr(begin, word - begin));
    const std::string rest(command.substr(word));
    if (kind == ShellKind::fish && !variables.empty())
        return {.text = "exec env " + variables + rest, .replacesShell = true};
    return {.text = variables + "exec " + rest, .replacesShell = true};
}

int logDescriptor(ShellKind kind) {
    return kind == ShellKind::fish ? STDERR_FILENO : spareDescriptor;
}

// Every shell must have moved its errors before it reads the command, or what it says of a missing quote is
// lost. zsh reads all of its text at once, so it gets the command as an argument; for the others that would
// mean a process more, as they replace themselves only with the last command of the text.
std::vector<std::string> shellArguments(const ShellLine &line, ShellKind kind, const std::string &name) {
    const std::string moved = "exec 2>&9 9>&-";
    switch (kind) {
    case ShellKind::fish: // run directly, a command that can't be parsed would count as a success
        return {"-ilc", "eval $argv[1]", line.text};
    case ShellKind::zsh:
        return {"-ilc", moved + "; eval \"$1\"", name, line.text};
    case ShellKind::posix:
        break;
    }
    return {"-ilc", moved + "\n" + line.text};
}

} // namespace tarnvale
