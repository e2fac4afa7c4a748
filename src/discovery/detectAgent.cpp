#include "discovery/detectAgent.h"

#include "discovery/text.h"

#include <algorithm>
#include <vector>

namespace tarnvale {

namespace {

std::string baseName(std::string_view path) {
    return lowercased(lastPathComponent(path));
}

/// The names that the script of a runtime may go by.
std::vector<std::string> scriptNames(std::string_view args) {
    std::vector<std::string> names;
    for (const std::string_view word : words(args, 3)) {
        const std::string token = lowercased(word);
        names.push_back(baseName(token));
        if (token.find("/claude-code/") != token.npos)
            names.emplace_back("claude");
        if (token.find("/@openai/codex/") != token.npos)
            names.emplace_back("codex");
    }
    return names;
}

} // namespace

bool isNodeLike(std::string_view path) {
    const std::string name = baseName(path);
    return name == "node" || name == "bun" || name == "deno";
}

std::optional<std::string> detectAgent(std::string_view path, const std::optional<std::string> &args) {
    std::vector<std::string> candidates{baseName(path)};
    if (args && isNodeLike(path))
        for (std::string &name : scriptNames(*args))
            candidates.push_back(std::move(name));
    const auto has = [&](std::string_view name) {
        return std::find(candidates.begin(), candidates.end(), name) != candidates.end();
    };
    if (has("claude"))
        return "Claude Code";
    if (has("codex"))
        return "Codex";
    return std::nullopt;
}

} // namespace tarnvale
