#include "updates/FeedText.h"

#include <string_view>

namespace tarnvale {

namespace {

std::string element(std::string_view name, const std::string &content) {
    const std::string tag(name);
    return content.empty() ? std::string() : "<" + tag + ">" + content + "</" + tag + ">\n";
}

std::string attribute(std::string_view name, const std::string &value) {
    return value.empty() ? std::string() : " " + std::string(name) + "=\"" + value + "\"";
}

} // namespace

std::string someSignature() {
    return std::string(86, 'A') + "==";
}

std::string FeedItemText::text() const {
    const std::string bytes = length == 0 ? std::string() : std::to_string(length);
    return "<item>\n" + element("title", "Version " + shortVersion) + element("sparkle:version", version) +
           element("sparkle:shortVersionString", shortVersion) +
           element("description", notes.empty() ? notes : "<![CDATA[" + notes + "]]>") +
           element("pubDate", "Sat, 01 Mar 2025 12:00:00 +0000") + more + "<enclosure" +
           attribute("url", url) + attribute("length", bytes) +
           attribute("type", "application/octet-stream") + attribute("sparkle:os", system) +
           attribute("sparkle:edSignature", signature) + "/>\n</item>\n";
}

std::string feedOf(const std::string &items) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">\n"
           "<channel>\n<title>Tarnvale</title>\n" +
           items + "</channel>\n</rss>\n";
}

} // namespace tarnvale
