#include "discovery/linux/ProcStat.h"

#include "discovery/text.h"

#include <array>

namespace tarnvale {

namespace {

/// The fields behind the name, by their number in proc(5).
class Fields {
public:
    explicit Fields(std::string_view text) {
        while (m_count < m_fields.size() && !text.empty()) {
            const std::size_t end = text.find_first_of(" \n");
            if (end == text.npos)
                break; // cut short
            if (end > 0)
                m_fields.at(m_count++) = text.substr(0, end);
            text.remove_prefix(end + 1);
        }
    }

    [[nodiscard]] std::string_view text(std::size_t number) const { return m_fields.at(number - first); }

    template<typename Number> [[nodiscard]] Number number(std::size_t number, bool &isValid) const {
        const auto value = parseInteger<Number>(text(number));
        isValid = isValid && value.has_value();
        return value.value_or(0);
    }

private:
    static constexpr std::size_t first = 3;
    static constexpr std::size_t last = 24;

    std::array<std::string_view, last - first + 1> m_fields;
    std::size_t m_count = 0;
};

} // namespace

// Sample, a process named "a) b": "42 (a) b) S 1 42 42 0 -1 4194560 139 0 0 0 3 1 0 0 20 0 1 0 5120 9043968
// 1093 …"
std::optional<ProcStat> parseProcStat(std::string_view content) {
    const std::size_t open = content.find('(');
    const std::size_t close = content.rfind(')');
    if (open == content.npos || close == content.npos || close < open)
        return std::nullopt;
    const Fields fields(content.substr(close + 1));
    if (fields.text(3).size() != 1)
        return std::nullopt;
    bool isValid = true;
    ProcStat stat{
        .comm = std::string(content.substr(open + 1, close - open - 1)),
        .state = fields.text(3).front(),
        .ppid = fields.number<Pid>(4, isValid),
        .minorFaults = fields.number<std::uint64_t>(10, isValid),
        .userTime = fields.number<std::uint64_t>(14, isValid),
        .systemTime = fields.number<std::uint64_t>(15, isValid),
        .threads = fields.number<std::int64_t>(20, isValid),
        .startTime = fields.number<std::uint64_t>(22, isValid),
        .virtualSize = fields.number<std::uint64_t>(23, isValid),
        .residentPages = fields.number<std::int64_t>(24, isValid),
    };
    if (!isValid)
        return std::nullopt;
    return stat;
}

} // namespace tarnvale
