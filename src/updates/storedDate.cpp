#include "updates/storedDate.h"

#include "discovery/text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tarnvale {

namespace {

using namespace std::chrono;

constexpr Instant epoch = sys_days{year{2001} / 1 / 1};

/// Some 3,000 years: what is further away was never written by a clock.
constexpr double farthest = 1e11;

} // namespace

std::string storedDate(Instant date) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(),
                                            duration<double>(date - epoch).count(), std::chars_format::fixed);
    return error == std::errc{} ? std::string(text.data(), end) : std::string();
}

std::optional<Instant> readStoredDate(std::string_view text) {
    const auto seconds = parseDouble(text);
    if (!seconds || std::abs(*seconds) > farthest)
        return std::nullopt;
    return epoch + milliseconds(std::llround(*seconds * 1000));
}

} // namespace tarnvale
