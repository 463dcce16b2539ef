// Waiting for elements on a live application: the awaited view is added by
// the main thread while the test queue polls, as in a test run.
#include <mutex>

#include "JTK/JTKClass.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/platform/Dispatch.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using Clock = std::chrono::steady_clock;

class ElementWait : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        content = makeWindow({0, 0, 400, 300})->desktopContentView();
        // Every search asks the content view for its name: the times of those
        // calls show when the searches ran.
        content->addMethod("hbViewName", [this](platform::Object&, const platform::Value&) {
            std::lock_guard lock(mutex);
            calls.push_back(Clock::now());
            return platform::Value("Content");
        });
    }

    // Start times of the searches since start, in seconds: calls more than
    // 50 ms apart belong to different searches.
    std::vector<double> searchesSince(Clock::time_point start) {
        std::lock_guard lock(mutex);
        std::vector<double> searches;
        Clock::time_point previous{};
        for (auto call : calls) {
            if (call < start) continue;
            if (searches.empty() || call - previous > std::chrono::milliseconds(50))
                searches.push_back(std::chrono::duration<double>(call - start).count());
            previous = call;
        }
        return searches;
    }

    void addLateButton(double delay) {
        platform::dispatchAfterMain(delay, [this] { late = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Late"); });
    }

    std::shared_ptr<desktop::View> content;
    std::shared_ptr<desktop::Button> late;
    std::mutex mutex;
    std::vector<Clock::time_point> calls;
};

TEST_F(ElementWait, aLookupThatMatchesAtOnceSearchesOnceAndExistenceNeverWaits) {
    add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Ready");
    add<desktop::Button>(content, Rect{10, 50, 80, 20}, "Hidden")->setHidden(true);
    Clock::time_point start;
    bool hiddenExists = true;
    onQueue([&] {
        start = Clock::now();
        EXPECT_EQ(JTKTestSuite::waitForExistence("Ready", std::nullopt, 1.0).view()->className(), "Button");
    });
    EXPECT_EQ(searchesSince(start).size(), 1u) << "the count and the final search follow each other at once";
    onQueue([&] {
        start = Clock::now();
        hiddenExists = JTKTestSuite::elementExists("Hidden");
    });
    EXPECT_FALSE(hiddenExists);
    EXPECT_EQ(searchesSince(start).size(), 1u);
}

TEST_F(ElementWait, aViewAppearingAfter250MsIsFoundByTheSearchAfterTheThirdSleep) {
    Clock::time_point start;
    std::shared_ptr<platform::View> found;
    double elapsed = 0;
    onQueue([&] {
        start = Clock::now();
        addLateButton(0.25);
        found = JTKTestSuite::element("Late").view();
        elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    });
    EXPECT_EQ(found, late);
    // element() searches once, then waits: searches at 0, 0.1, 0.2 find nothing.
    auto searches = searchesSince(start);
    ASSERT_EQ(searches.size(), 4u);
    EXPECT_GE(searches[3], 0.3);
    EXPECT_GE(elapsed, 0.3);
}

TEST_F(ElementWait, theClassGivenToTheWaitIsHonouredWhileWaiting) {
    name(add<desktop::View>(content, Rect{10, 200, 80, 20}), "Late");  // the right name, the wrong class
    std::shared_ptr<platform::View> found;
    onQueue([&] {
        addLateButton(0.25);
        found = JTKTestSuite::waitForExistence("Late", jtkClass<desktop::Button>(), 1.0).view();
    });
    EXPECT_EQ(found, late);
}

}  // namespace
