#include "commands/hotkey/Shortcut.h"

#include "commands/hotkey/keycaps.h"
#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view input = asText(data, size);
    if (const auto shortcut = decodeShortcut(input)) {
        check(input.find('{') != std::string_view::npos, "only an object is a shortcut");
        check(isUtf8(shortcut->display), "a label is text");
        const auto json = encodeShortcut(*shortcut);
        check(json && decodeShortcut(*json) == shortcut, "what is written is read again");
    }
    // Labels come from there, too.
    const std::string text = displayText(input);
    check(keycaps(input).empty() == text.empty(), "what has caps has a text");
    check(input.ends_with(keyLabel(input)), "the label is the end");
    return 0;
}
