#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

/// Text that arrives in pieces, cut anywhere. All that is given back, joined, is `repairedUtf8` of all that
/// was put in.
class Utf8Stream {
public:
    /// Valid UTF-8: what can be told of `bytes` and of what was kept before. At most 3 bytes are kept.
    [[nodiscard]] std::string take(std::string_view bytes);

    /// What is left at the end.
    [[nodiscard]] std::string finish();

private:
    std::string m_rest; ///< the begin of a character whose end hasn't come yet
};

} // namespace tarnvale
