// Every page in its states, drawn in light and dark, narrow and wide.
//
// With TARNVALE_PICTURES set to a folder, the pictures are left there to be looked at.

#include "presentation/pages/PageScene.h"

#include "presentation/pages/PagesTest.h"
#include "store/settingsKeys.h"
#include "store/storedJson.h"
#include "support/TemporaryFolder.h"

#include <QAccessible>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

void keepPicture(PageScene &scene, const std::string &name) {
    const QString folder = qEnvironmentVariable("TARNVALE_PICTURES");
    if (!folder.isEmpty()) {
        EXPECT_TRUE(
            scene.view.grabWindow().save(folder + QLatin1Char('/') + QString::fromStdString(name) + ".png"));
    }
}

std::vector<LocalSites::Site> manySites(int count) {
    std::vector<LocalSites::Site> sites;
    for (int number = 0; number < count; ++number) {
        const std::string domain = "site-" + std::to_string(number) + ".test";
        sites.push_back({domain, (number % 3 == 0 ? "https://" : "http://") + domain});
    }
    return sites;
}

void addMoreStacks(DemoWorld &world) {
    std::vector<Stack> stacks;
    stacks.push_back(stackOf("shop", {"node node_modules/.bin/vite", "php artisan queue:work"}));
    stacks.push_back(stackOf("billing", {"php artisan serve"}, "/home/me/billing"));
    stacks.push_back(stackOf("everything", {"npm run dev"}, "/home/me/a"));
    stacks.back().commands.push_back({"redis-server --port 6400 " + std::string(300, 'x'), "/home/me/b"});
    for (int number = 0; number < 3; ++number)
        stacks.push_back(stackOf("project " + std::to_string(number), {"npm run dev", "npm run worker"}));
    world.platform.settings.values[keys::stacks] = encodeStacks(stacks);
}

struct Look {
    std::string name;
    std::string scene;
    bool isDark = false;
    int width = 1000;
    int height = 760;
};

const std::vector<Look> looks{
    {"light", "full", false},
    {"dark", "full", true},
    {"narrow", "full", false, 560, 560},
    {"empty", "empty", true},
    {"long", "long", false, 700, 600},
    {"wide", "full", true, 2400, 1300},
};

class PageScreens : public testing::TestWithParam<Look> {
protected:
    [[nodiscard]] std::unique_ptr<PageScene>
    scene(const std::function<void(DemoWorld &)> &prepare = {}) const {
        auto result = std::make_unique<PageScene>(GetParam().scene, prepare, GetParam().isDark);
        result->resize(GetParam().width, GetParam().height);
        return result;
    }

    void finish(PageScene &scene, const std::string &page) const {
        keepPicture(scene, page + "-" + GetParam().name);
        EXPECT_EQ(scene.warnings(), "");
    }
};

TEST_P(PageScreens, overview) {
    const auto scene = this->scene(GetParam().name == "dark" ? addMoreStacks : nullptr);
    scene->showOverview();
    finish(*scene, "overview");
    scene->view.rootObject()->setProperty("contentY", 420);
    scene->draw();
    finish(*scene, "overview-below");
}

TEST_P(PageScreens, stacks) {
    const auto scene = this->scene(GetParam().scene == "full" ? addMoreStacks : nullptr);
    scene->showStacks();
    if (!scene->store->stacks().empty())
        scene->stacks->deleteInTwoSteps(scene->store->stacks().front().id.toString(QUuid::WithoutBraces));
    scene->draw();
    finish(*scene, "stacks");
}

TEST_P(PageScreens, sheet) {
    const TemporaryFolder folder;
    if (GetParam().scene == "full") {
        folder.write("package.json", R"({"scripts": {"dev": "x", "start": "y"}})");
        folder.write("artisan", "");
        folder.write("compose.yaml", "");
    }
    if (GetParam().scene == "long") {
        for (int number = 0; number < 40; ++number)
            folder.write("Procfile", readFile(folder.path("Procfile")) + "web: run " +
                                         std::to_string(number) + std::string(60, 'x') + "\n");
    }
    const auto scene = this->scene(addMoreStacks);
    scene->showStacks();
    scene->stacks->newStack()->open(folder.path());
    scene->draw();
    finish(*scene, "sheet");
}

TEST_P(PageScreens, activity) {
    const auto scene = this->scene();
    scene->showActivity();
    finish(*scene, "activity");
    scene->activity->setGrouping(1);
    scene->activity->clearInTwoSteps();
    scene->draw();
    finish(*scene, "activity-port");
}

TEST_P(PageScreens, sites) {
    const auto scene = this->scene();
    scene->showSites(manySites(GetParam().scene == "full" ? 40 : 0));
    finish(*scene, "sites");
}

INSTANTIATE_TEST_SUITE_P(all, PageScreens, testing::ValuesIn(looks),
                         [](const auto &look) { return look.param.name; });

} // namespace
} // namespace tarnvale
