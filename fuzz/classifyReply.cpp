#include "probes/classifyReply.h"

#include "fuzz/check.h"

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes = asText(data, size);
    const Health health = classifyReply(bytes);
    const bool hasCode = health.kind == Health::Kind::responding || health.kind == Health::Kind::serverError;
    check(!hasCode || bytes.starts_with("HTTP/1."), "only HTTP/1 has a status");
    check(!hasCode || (health.kind == Health::Kind::serverError) == (health.code > 499),
          "500 parts the kinds");
    check(health.code >= -99 && health.code <= 999, "three characters hold no more");
    check(health.kind != Health::Kind::noResponse, "something came");
    check(hasCode || health.code == 0, "the others have no code");
    return 0;
}
