#include "probes/classifyReply.h"

#include "discovery/text.h"

namespace tarnvale {

// Sample: "HTTP/1.1 404 Not Found\r\nServer: …"
Health classifyReply(std::string_view bytes) {
    constexpr std::size_t beforeStatus = 9;
    constexpr std::size_t statusLength = 3;
    constexpr std::int64_t lastGoodStatus = 499;
    const std::string text = repairedUtf8(bytes);
    std::string_view status = text;
    if (!status.starts_with("HTTP/1."))
        return Health::unknown();
    status.remove_prefix(firstCharacters(status, beforeStatus).size());
    const auto code = parseInteger<std::int64_t>(firstCharacters(status, statusLength));
    if (!code)
        return Health::unknown();
    return *code > lastGoodStatus ? Health::serverError(*code) : Health::responding(*code);
}

} // namespace tarnvale
