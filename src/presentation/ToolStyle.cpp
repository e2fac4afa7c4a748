#include "presentation/ToolStyle.h"

#include "discovery/naming.h"
#include "discovery/text.h"

#include <algorithm>
#include <array>
#include <span>

namespace tarnvale {

namespace {

/// Fragments of a tool's names, not words, and what it looks like. Unused places are empty.
struct ToolRow {
    std::array<std::string_view, 7> keywords;
    ToolStyle style;
};

constexpr std::string_view terminal = "terminal.fill";
constexpr std::string_view dockerLogo = "logo-docker";
constexpr std::string_view nodeLogo = "logo-nodedotjs";

constexpr ToolStyle withLogo(std::string_view logo, std::uint32_t rgb) {
    return {.symbol = terminal, .tint = Rgb{rgb}, .logo = logo};
}

constexpr ToolStyle database(std::string_view logo, std::uint32_t rgb) {
    return {.symbol = terminal, .tint = Rgb{rgb}, .isDatabase = true, .logo = logo};
}

constexpr std::array<ToolRow, 19> tools{{
    {{"laravel"}, withLogo("logo-laravel", 0xFF2D20)},
    {{"postgres"}, database("logo-postgresql", 0x4169E1)},
    {{"mariadb"}, database("logo-mariadb", 0xC0765A)},
    {{"mysql"}, database("logo-mysql", 0x4479A1)},
    {{"mongo"}, database("logo-mongodb", 0x47A248)},
    {{"redis", "valkey"}, database("logo-redis", 0xFF4438)},
    {{"nginx"}, withLogo("logo-nginx", 0x009639)},
    {{"httpd", "apache"}, withLogo("logo-apache", 0xD22128)},
    {{"caddy"}, withLogo("logo-caddy", 0x1F88C0)},
    {{"docker", "orbstack", "colima"}, withLogo(dockerLogo, 0x2496ED)},
    {{"php", "frankenphp", "artisan"}, withLogo("logo-php", 0x777BB4)},
    {{"bun"}, withLogo("logo-bun", 0xFBF0DF)},
    {{"deno"}, withLogo("logo-deno", 0x70FFAF)},
    {{"node"}, withLogo(nodeLogo, 0x5FA04E)},
    {{"python", "uvicorn", "gunicorn", "django", "flask"}, withLogo("logo-python", 0x3776AB)},
    {{"rails", "puma"}, withLogo("logo-rubyonrails", 0xD30001)},
    {{"ruby"}, withLogo("logo-ruby", 0xCC342D)},
    {{"flutter"}, withLogo("logo-flutter", 0x02569B)},
    {{"dart"}, withLogo("logo-dart", 0x0175C2)},
}};

constexpr std::array<ToolRow, 7> fallbackTools{{
    {{"clickhouse"}, {"cylinder.split.1x2.fill", StandardColor::orange, true}},
    {{"memcache"}, {"bolt.horizontal.fill", StandardColor::red, true}},
    {{"traefik"}, {"globe", StandardColor::teal}},
    {{"adb", "emulator", "qemu"}, {"iphone", StandardColor::cyan}},
    {{"java", "gradle", "kotlin"}, {"cup.and.saucer.fill", StandardColor::brown}},
    {{"podman"}, {"shippingbox.fill", StandardColor::blue}},
    {{"code helper", "cursor", "electron", "language", ".ls", "jetbrains", "intellij"},
     {"macwindow", StandardColor::blue}},
}};

constexpr ToolStyle herd{.symbol = "server.rack", .tint = StandardColor::red, .appID = "de.beyondco.herd"};
constexpr ToolStyle systemProcess{.symbol = "gearshape.fill", .tint = StandardColor::gray};
constexpr ToolStyle anyTool{.symbol = terminal, .tint = StandardColor::gray};

std::optional<ToolStyle> firstMatch(std::span<const ToolRow> rows, std::string_view text) {
    const auto isNamed = [text](const ToolRow &row) {
        return std::any_of(row.keywords.begin(), row.keywords.end(), [text](std::string_view keyword) {
            return !keyword.empty() && text.find(keyword) != text.npos;
        });
    };
    const auto match = std::find_if(rows.begin(), rows.end(), isNamed);
    return match == rows.end() ? std::nullopt : std::optional(match->style);
}

/// Node says little; the framework that it runs stands in its arguments.
ToolStyle nodeStyle(const ListeningPort &port, const ToolStyle &plain) {
    const std::string args = lowercased(port.args.value_or(std::string()));
    if (args.find("vite") != args.npos)
        return withLogo("logo-vite", 0x9135FF);
    if (args.find("next") != args.npos)
        return withLogo("logo-nextdotjs", 0x8E8E93);
    return plain;
}

bool isSystemProcess(const ListeningPort &port) {
    const bool worksInFolder = port.cwd && *port.cwd != "/";
    return !port.container && !port.brewService() && !isKnownServiceCommand(port.command) && !worksInFolder;
}

} // namespace

ToolStyle toolStyle(const ListeningPort &port) {
    const std::string name = port.displayName();
    if (name == "Herd")
        return herd;
    const std::string text =
        lowercased(port.command + " " + port.container.value_or(std::string()) + " " + name);
    if (auto style = firstMatch(tools, text)) {
        if (style->logo == nodeLogo)
            style = nodeStyle(port, *style);
        style->inContainer = port.container && style->logo != dockerLogo;
        return *style;
    }
    return isSystemProcess(port) ? systemProcess : firstMatch(fallbackTools, text).value_or(anyTool);
}

} // namespace tarnvale
