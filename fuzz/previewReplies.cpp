#include "platform/PreviewProtocol.h"

#include "fuzz/check.h"

#include <vector>

using namespace tarnvale;

namespace {

std::vector<QByteArray> read(std::string_view bytes, std::size_t step) {
    PreviewReplies replies;
    std::vector<QByteArray> all;
    for (std::size_t begin = 0; begin < bytes.size(); begin += step) {
        replies.add(bytes.substr(begin, step));
        while (const auto reply = replies.next())
            all.push_back(*reply);
    }
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes = asText(data, size);
    const std::vector<QByteArray> replies = read(bytes, size + 1);
    check(replies == read(bytes, 1), "how it arrives doesn't matter");
    std::string again;
    for (const QByteArray &reply : replies) {
        again += previewReply(reply).toStdString();
        static_cast<void>(isPreviewPicture(reply));
    }
    check(bytes.starts_with(again), "what is read was written so");
    if (const auto port = parsePreviewRequest(bytes))
        check(isPreviewPort(*port), "a request is a port");
    return 0;
}
