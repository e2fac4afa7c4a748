#include "discovery/text.h"

#include "fuzz/check.h"

using namespace tarnvale;

namespace {

bool isControl(std::uint32_t point) {
    return point < 0x20 || (point >= 0x7F && point <= 0x9F) || point == 0x061C || point == 0x200E ||
           point == 0x200F || (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

void checkRepair(std::string_view text) {
    const std::string repaired = repairedUtf8(text);
    check(isUtf8(repaired), "repaired text is well-formed");
    check(!isUtf8(text) || repaired == text, "well-formed text stays as it is");
    check(repairedUtf8(repaired) == repaired, "repairing twice changes nothing");

    const std::string fit = printable(text);
    check(isUtf8(fit), "printable text is well-formed");
    forEachCodePoint(fit,
                     [](std::uint32_t point) { check(!isControl(point), "printable text has no controls"); });
    check(printable(fit) == fit, "printable text stays as it is");
    check(characterCount(fit) == characterCount(repaired), "each character stays one");

    std::size_t count = 0;
    forEachCodePoint(repaired, [&](std::uint32_t) { ++count; });
    check(characterCount(repaired) == count, "characters are code points");
    for (const std::size_t wanted : {std::size_t{0}, std::size_t{1}, count / 2, count, count + 1}) {
        const std::string_view front = firstCharacters(repaired, wanted);
        check(repaired.starts_with(front) && isUtf8(front), "a cut keeps characters whole");
        check(characterCount(front) == std::min(wanted, count), "a cut is as long as asked for");
    }
}

void checkWords(std::string_view text) {
    std::string_view rest = text;
    const auto all = words(text);
    for (const std::string_view word : all) {
        check(!word.empty() && leadingWhitespace(word) == 0, "a word has no blank in front");
        check(takeWord(rest) == word, "words are taken in order");
    }
    check(takeWord(rest).empty(), "no word is left");
    check(words(text, 2).size() == std::min<std::size_t>(2, all.size()), "the limit holds");
    check(leadingWhitespace(text) <= text.size(), "white space ends with the text");

    for (const char separator : {'\n', ' ', '\0'}) {
        std::string joined;
        for (const std::string_view piece : split(text, separator))
            joined += std::string(piece) + separator;
        check(joined == std::string(text) + separator, "pieces and separators make the text");
    }
    for (const std::string_view line : nonEmptyLines(text))
        check(!line.empty() && line.find('\n') == line.npos, "a line is a line");
}

void checkPaths(std::string_view text) {
    const std::string_view last = lastPathComponent(text);
    check(last == "/" || last.find('/') == last.npos, "a component has no slash");
    check(last.empty() == text.empty(), "a path has a last component");
    check(parentPath(text).size() <= text.size(), "a parent isn't longer");
    check(lowercased(text).size() == text.size(), "lower case keeps the length");
}

void checkNumbers(std::string_view text) {
    if (const auto number = parseInteger<std::int64_t>(text)) {
        check(parseInteger<std::int64_t>(std::to_string(*number)) == number,
              "a number can be written and read");
        check(text.find_first_not_of("+-0123456789") == text.npos, "a number is made of digits");
    }
    if (const auto number = parseInteger<std::uint16_t>(text))
        check(parseInteger<std::int64_t>(text) == *number, "a small number is a number");
    if (const auto number = parseDouble(text))
        check(*number - *number == 0, "a number is finite");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text = asText(data, size);
    checkRepair(text);
    checkWords(text);
    checkPaths(text);
    checkNumbers(text);
    return 0;
}
