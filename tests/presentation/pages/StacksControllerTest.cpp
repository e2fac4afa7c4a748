#include "presentation/pages/StacksController.h"

#include "presentation/pages/PagesTest.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class StacksPageState : public PagesTest {
protected:
    void startPage() {
        start();
        page = std::make_unique<StacksController>(*store, world.platform(),
                                                  [this](const auto &onDone) { choices.push_back(onDone); });
        page->setShown(true);
    }

    std::unique_ptr<StacksController> page;
    std::vector<std::function<void(std::optional<std::string>)>> choices; ///< folders that are asked for
    const Stack shop = stackOf("shop", {"npm run dev", "make watch", "redis-server"});
    const Stack docs = stackOf("docs", {"python3 -m http.server"}, "/home/me/docs");
};

TEST_F(StacksPageState, twoOfThreeRunAndItCanBeStarted) {
    addStacks({shop});
    addServer(42, 5173, "npm run dev");
    addServer(43, 6379, "redis-server");
    startPage();
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("2 of 3 running"));
    EXPECT_FALSE(role(page->stacks(), 0, "isRunning").toBool());
    page->startStack(idOf(shop));
    EXPECT_THAT(world.launcher.commands(), ElementsAre("make watch"));
}

TEST_F(StacksPageState, withAllRunningAPressStartsNothing) {
    addStacks({docs});
    addServer(42, 8000, "python3 -m http.server", "/home/me/docs");
    startPage();
    EXPECT_TRUE(role(page->stacks(), 0, "isRunning").toBool());
    page->startStack(idOf(docs));
    pass(3s);
    EXPECT_THAT(world.launcher.commands(), IsEmpty());
}

TEST_F(StacksPageState, whatRunsIsWorkedOutAtEachScan) {
    addStacks({docs});
    startPage();
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("0 of 1 running"));
    addServer(42, 8000, "python3 -m http.server", "/home/me/docs");
    scan();
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("1 of 1 running"));
    world.machine.end(42);
    scan();
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("0 of 1 running"));
}

TEST_F(StacksPageState, stacksStandInStoredOrder) {
    addStacks({shop, docs, stackOf("api", {"go run ."})});
    startPage();
    EXPECT_THAT(texts(page->stacks(), "name"), ElementsAre("shop", "docs", "api"));
    EXPECT_EQ(page->stackCount(), 3);
}

TEST_F(StacksPageState, theFirstPressOnDeleteOnlyArms) {
    addStacks({shop, docs});
    startPage();
    page->deleteInTwoSteps(idOf(shop));
    EXPECT_TRUE(role(page->stacks(), 0, "isArmed").toBool());
    EXPECT_FALSE(role(page->stacks(), 1, "isArmed").toBool());
    pass(3s);
    EXPECT_FALSE(role(page->stacks(), 0, "isArmed").toBool());
    EXPECT_THAT(store->stacks(), SizeIs(2));
}

TEST_F(StacksPageState, theSecondPressInTimeDeletes) {
    addStacks({shop, docs});
    startPage();
    page->deleteInTwoSteps(idOf(shop));
    pass(2s);
    page->deleteInTwoSteps(idOf(shop));
    quiesce();
    EXPECT_THAT(texts(page->stacks(), "name"), ElementsAre("docs"));
    EXPECT_THAT(store->stacks(), SizeIs(1));
    EXPECT_EQ(page->stackCount(), 1);
}

TEST_F(StacksPageState, leavingThePageDisarms) {
    addStacks({shop});
    startPage();
    page->deleteInTwoSteps(idOf(shop));
    page->setShown(false);
    page->setShown(true);
    EXPECT_FALSE(role(page->stacks(), 0, "isArmed").toBool());
    page->deleteInTwoSteps(idOf(shop));
    EXPECT_THAT(store->stacks(), SizeIs(1));
}

TEST_F(StacksPageState, aChosenFolderOpensTheSheet) {
    startPage();
    page->newFromFolder();
    EXPECT_FALSE(page->newStack()->isOpen());
    ASSERT_THAT(choices, SizeIs(1));
    choices.front()("/home/me/shop");
    EXPECT_TRUE(page->newStack()->isOpen());
    EXPECT_EQ(page->newStack()->folder(), QStringLiteral("/home/me/shop"));
}

TEST_F(StacksPageState, aCancelledChoiceDoesNothing) {
    startPage();
    page->newFromFolder();
    choices.front()(std::nullopt);
    EXPECT_FALSE(page->newStack()->isOpen());
    page->newFromFolder();
    EXPECT_THAT(choices, SizeIs(2));
}

TEST_F(StacksPageState, oneFolderIsAskedForAtATime) {
    startPage();
    page->newFromFolder();
    page->newFromFolder();
    EXPECT_THAT(choices, SizeIs(1));
}

TEST_F(StacksPageState, aChoiceMayComeAfterThePageHasGone) {
    startPage();
    page->newFromFolder();
    page.reset();
    choices.front()("/home/me/shop");
    EXPECT_THAT(store->stacks(), IsEmpty());
}

TEST_F(StacksPageState, nothingIsWorkedOutWhileItIsHidden) {
    addStacks({docs});
    startPage();
    page->setShown(false);
    addServer(42, 8000, "python3 -m http.server", "/home/me/docs");
    scan();
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("0 of 1 running"));
    page->setShown(true);
    EXPECT_THAT(texts(page->stacks(), "progress"), ElementsAre("1 of 1 running"));
}

} // namespace
} // namespace tarnvale
