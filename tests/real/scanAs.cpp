#include "real/scanAs.h"

#include "discovery/text.h"
#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

constexpr char fieldEnd = '\x1f';
constexpr char recordEnd = '\x1e';

std::string written(const std::optional<std::string> &text) {
    return text ? "+" + *text : std::string();
}

std::optional<std::string> readBack(std::string_view text) {
    return text.empty() ? std::nullopt : std::optional(std::string(text.substr(1)));
}

std::string written(const ListeningPort &record) {
    std::string text;
    for (const std::string &field :
         {std::to_string(record.pid), record.command, std::to_string(record.port),
          std::to_string(record.isExposed), std::to_string(static_cast<int>(record.serviceManager)),
          written(record.cwd), written(record.args), written(record.service), written(record.container)})
        text += field + fieldEnd;
    return text + recordEnd;
}

ListeningPort readRecord(std::string_view text) {
    const auto fields = split(text, fieldEnd);
    ListeningPort record;
    record.pid = parseInteger<Pid>(fields.at(0)).value_or(0);
    record.command = fields.at(1);
    record.port = parseInteger<std::int64_t>(fields.at(2)).value_or(0);
    record.isExposed = fields.at(3) == "1";
    record.serviceManager = static_cast<ServiceManager>(parseInteger<int>(fields.at(4)).value_or(0));
    record.cwd = readBack(fields.at(5));
    record.args = readBack(fields.at(6));
    record.service = readBack(fields.at(7));
    record.container = readBack(fields.at(8));
    return record;
}

} // namespace

std::vector<ListeningPort> scanPortAs(uid_t user, std::uint16_t port) {
    RealProcess scan(
        [&] {
            std::string text;
            for (const ListeningPort &record : scanPort(port))
                text += written(record);
            static_cast<void>(!write(STDOUT_FILENO, text.data(), text.size()));
        },
        {.user = user});
    if (!scan.waitForEnd(40s))
        ADD_FAILURE() << "the scan of another user doesn't end: " << scan.output();
    std::vector<ListeningPort> records;
    const std::string output = scan.output();
    for (const std::string_view text : split(output, recordEnd))
        if (!text.empty())
            records.push_back(readRecord(text));
    return records;
}

std::string tarnctlAs(uid_t user, const std::vector<std::string> &words) {
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::vector<std::string> all{folder.path("tarnvale")};
    std::filesystem::copy_file(TARNVALE_EXECUTABLE, all.front());
    std::filesystem::permissions(all.front(), std::filesystem::perms(0755));
    all.insert(all.end(), words.begin(), words.end());
    RealProcess program(all, {.user = user});
    if (!program.waitForEnd(40s))
        ADD_FAILURE() << "the program of another user doesn't end: " << program.output();
    return program.output();
}

} // namespace tarnvale
