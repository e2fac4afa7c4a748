#include "updates/parseAppcast.h"

#include "fuzz/check.h"
#include "updates/compareVersions.h"
#include "updates/newestUpdate.h"
#include "updates/verifyFile.h"

using namespace tarnvale;

namespace {

bool isOneLine(std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) < ' ')
            return false;
    return isUtf8(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto items =
        parseAppcast(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!items)
        return 0;
    for (const UpdateItem &item : *items) {
        check(!item.version.empty() && isOneLine(item.version), "an item has a version");
        check(isOneLine(item.shortVersion) && isOneLine(item.title) && isOneLine(item.type),
              "texts are lines");
        check(isUtf8(item.notes) && item.notes.size() <= 64u << 10, "notes are bounded text");
        check(item.url.starts_with("https://"), "files come over HTTPS");
        check(item.notesUrl.empty() || item.notesUrl.starts_with("https://"), "so do notes");
        check(item.length >= 1 && item.length <= mostUpdateBytes, "a file has a size");
        check(isSignature(item.signature), "and a signature");
        check(compareVersions(item.version, item.version) == 0, "a version is as new as itself");
    }
    if (const auto newest = newestUpdate(*items, "1.0")) {
        check(compareVersions(newest->version, "1.0") > 0, "no downgrade");
        for (const UpdateItem &item : *items)
            check(compareVersions(item.version, newest->version) <= 0, "none is newer");
    }
    return 0;
}
