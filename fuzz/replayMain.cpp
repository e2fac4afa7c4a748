// Feeds every file of the folders named on the command line to a fuzz target, without libFuzzer.

#include "fuzz/check.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

void replay(const std::filesystem::path &path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    // A copy of just that size, so that a read past the end is seen.
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    std::printf("%s, %zu bytes\n", path.c_str(), bytes.size());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int count, char **words) {
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        std::vector<std::filesystem::path> files;
        for (const auto &entry : std::filesystem::directory_iterator(words[i]))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (const auto &path : files)
            replay(path);
        replayed += files.size();
    }
    LLVMFuzzerTestOneInput(nullptr, 0);
    if (replayed == 0)
        std::fprintf(stderr, "there is nothing to replay\n");
    return replayed > 0 ? 0 : 1;
}
