#include "drive/DemoWorld.h"

#include "drive/demoPage.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"

#include <QPromise>

#include <chrono>
#include <functional>

namespace tarnvale {

using namespace std::chrono_literals;

namespace {

/// Servers are made one by one, with pids in the order of their making.
struct Builder {
    DemoWorld &world;
    Pid pid = 4200;

    Pid server(const std::string &path, const std::string &args, const std::string &cwd,
               const std::vector<std::int64_t> &ports, std::chrono::seconds age = 27min,
               bool isExposed = false, std::optional<std::string> application = {}) {
        FakeMachine &machine = world.platform.machine;
        ++pid;
        machine.add({.pid = pid,
                     .path = path,
                     .args = args,
                     .cwd = cwd,
                     .startedAt = machine.now() - age,
                     .cpu = 1.5,
                     .memoryKB = 84'000,
                     .application = std::move(application)});
        for (const std::int64_t port : ports)
            machine.listen(pid, port, isExposed);
        return pid;
    }

    void container(const std::string &name, const std::string &image, std::int64_t port) {
        server("/usr/bin/docker-proxy", "docker-proxy", "/", {port}, 5h);
        world.platform.machine.publishedPorts[port] = name + " · " + image;
    }

    void responds(std::int64_t port, std::int64_t code = 200) {
        constexpr std::int64_t firstServerError = 500;
        world.answers[port] = {code < firstServerError ? Health::responding(code) : Health::serverError(code),
                               12};
    }
};

void addEvents(DemoWorld &world, int count) {
    const std::vector<std::string> names{"shop", "api", "blog", "admin"};
    std::vector<PortEvent> events;
    Instant date = world.platform.clock.now();
    for (int number = 0; number < count; ++number) {
        date -= 37min * (number + 1);
        events.push_back({.id = QUuid::createUuid(),
                          .date = date,
                          .port = 3000 + number % 4,
                          .otherPorts = {},
                          .pid = 4000 + number,
                          .name = names[static_cast<std::size_t>(number) % names.size()],
                          .started = number % 3 != 0});
    }
    world.platform.settings.values[keys::events] = encodeEvents(events);
}

void addStacks(DemoWorld &world) {
    world.platform.settings.values[keys::stacks] =
        encodeStacks({{QUuid::createUuid(),
                       "shop",
                       {{"npm run dev", "/home/me/shop"}, {"php artisan queue:work", "/home/me/shop"}}},
                      {QUuid::createUuid(), "docs", {{"python3 -m http.server 8000", "/home/me/docs"}}}});
}

void few(DemoWorld &world) {
    Builder build{world};
    build.server("/usr/bin/node", "node node_modules/.bin/vite", "/home/me/shop", {5173}, 27min);
    build.responds(5173);
    build.server("/usr/bin/php8.2", "php artisan serve", "/home/me/billing", {8000}, 3h, true);
    build.responds(8000, 500);
    build.server("/usr/lib/postgresql/15/bin/postgres", "postgres -D data", "/var/lib/postgresql", {5432},
                 26h);
    addEvents(world, 4);
}

void full(DemoWorld &world) {
    few(world);
    Builder build{world, 5000};
    build.server("/usr/bin/node", "node node_modules/.bin/next dev", "/home/me/landing",
                 {3000, 3001, 3002, 3003}, 12min, true);
    build.responds(3000);
    build.server("/usr/bin/python3", "python3 -m uvicorn api:app", "/home/me/api", {8080}, 48s);
    build.responds(8080, 404);
    build.server("/usr/bin/ruby", "puma 6.0 [blog]", "/home/me/blog", {4000}, 50h);
    build.server("/usr/bin/redis-server", "redis-server *:6379", "/home/me/cache", {6379}, 8 * 24h);
    build.server("/home/me/.bun/bin/bun", "bun run dev", "/home/me/widgets", {3100}, 3min);
    build.responds(3100);
    build.server("/usr/bin/deno", "deno task start", "/home/me/edge", {8787}, 9min);
    build.responds(8787);
    build.container("mailhog", "mailhog/mailhog:latest", 8025);
    build.container("db", "mysql:8.4", 3306);
    build.server("/usr/sbin/nginx", "nginx: master process", "/home/me/proxy", {8443}, 2h, true);
    build.server("/usr/bin/java", "java -jar search.jar", "/home/me/search", {9200}, 90min);
    build.server("/usr/bin/memcached", "memcached -p 11211", "/home/me/cache", {11211}, 4h);
    addStacks(world);
    addEvents(world, 12);
    world.platform.settings.values[keys::watchedPorts] = std::vector<std::int64_t>{5173, 5432};
}

void many(DemoWorld &world) {
    Builder build{world};
    for (int number = 0; number < 300; ++number) {
        const std::int64_t port = 10'000 + number;
        build.server("/usr/bin/node", "node server.js", "/home/me/service-" + std::to_string(number), {port});
        build.responds(port);
    }
}

void longNames(DemoWorld &world) {
    Builder build{world};
    std::string endless = "the-endless-monorepo-of-a-company";
    while (endless.size() < 200)
        endless += "-and-one-more-folder";
    build.server("/usr/bin/node", "node vite " + std::string(100'000, 'x'), "/home/me/" + endless,
                 {5173, 5174, 5175, 5176, 5177}, 27min, true);
    build.responds(5173);
    build.server("/usr/bin/python3", "python3 -m http.server", "/home/me/متجر الكتب", {8000});
    build.responds(8000);
    build.server("/usr/bin/node", "node server.js", "/home/me/🛒 shop 🚀", {3000});
    build.responds(3000);
    build.container("a-container-with-a-very-long-name-indeed",
                    "registry.local/team/project/image-of-note:2025.3", 65535);
    world.platform.settings.values[keys::stacks] =
        encodeStacks({{QUuid::createUuid(), endless, {{"npm run dev", "/home/me/" + endless}}}});
}

const std::map<std::string, std::function<void(DemoWorld &)>> scenes{
    {"empty", [](DemoWorld &) {}}, {"few", few}, {"full", full}, {"many", many}, {"long", longNames},
};

} // namespace

QFuture<HealthCheck::Result> DemoWorld::probe(std::int64_t port) const {
    QPromise<HealthCheck::Result> promise;
    promise.start();
    const auto known = answers.find(port);
    promise.addResult(known == answers.end() ? HealthCheck::Result{Health::unknown(), {}} : known->second);
    promise.finish();
    return promise.future();
}

std::vector<std::string> demoScenes() {
    std::vector<std::string> names;
    for (const auto &[name, fill] : scenes)
        names.push_back(name);
    return names;
}

bool setScene(DemoWorld &world, const std::string &scene) {
    const auto found = scenes.find(scene);
    if (found == scenes.end())
        return false;
    found->second(world);
    world.platform.previewCapturer.draw = demoPage;
    return true;
}

} // namespace tarnvale
