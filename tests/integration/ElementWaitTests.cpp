// Waiting for elements on a live application: the awaited view is added by
// the main thread while the test queue polls, as in a test run.
#include <gtest/gtest.h>

#include <chrono>
#include <mutex>

#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/platform/Dispatch.h"
#include "tests/jtk/ElementFixture.h"

using namespace jtk;

namespace {

using Clock = std::chrono::steady_clock;
using platform::Rect;

class ElementWait : public ElementFixture {
protected:
    void SetUp() override {
        ElementFixture::SetUp();
        window = makeWindow(0, 0, 400, 300);
        content = window->desktopContentView();
        // Every search asks the content view for its name: the times of those
        // calls show when the searches ran.
        content->addMethod("hbViewName", [this](platform::Object&, const platform::Value&) {
            std::lock_guard lock(mutex);
            calls.push_back(Clock::now());
            return platform::Value("Content");
        });
    }

    // Start times of the searches since start: calls more than 50 ms apart
    // belong to different searches.
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
        platform::dispatchAfterMain(delay, [this] {
            late = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Late");
        });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> content;
    std::shared_ptr<desktop::Button> late;
    std::mutex mutex;
    std::vector<Clock::time_point> calls;
};

TEST_F(ElementWait, lookupThatMatchesAtOnceDoesNotSleep) {
    add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Ready");
    Clock::time_point start;
    std::optional<JTKElement> found;
    onQueue([&] {
        start = Clock::now();
        found.emplace(JTKTestSuite::waitForExistence("Ready", std::nullopt, 1.0));
    });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->view()->className(), "Button");
    EXPECT_EQ(searchesSince(start).size(), 1u) << "the count and the final search follow each other at once";
}

TEST_F(ElementWait, viewAppearingAfter250MsIsFoundAfterTheThirdSleep) {
    Clock::time_point start;
    std::optional<JTKElement> found;
    double elapsed = 0;
    onQueue([&] {
        start = Clock::now();
        addLateButton(0.25);
        found.emplace(JTKTestSuite::waitForExistence("Late", std::nullopt, 1.0));
        elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->view(), late);
    auto searches = searchesSince(start);
    // Searches at 0, 0.1, 0.2 find nothing; the one after the third sleep finds it.
    ASSERT_EQ(searches.size(), 4u);
    EXPECT_GE(elapsed, 0.3);
    EXPECT_GE(searches[3], 0.3);
}

TEST_F(ElementWait, elementWaitsForAViewThatAppearsLater) {
    std::optional<JTKElement> found;
    onQueue([&] {
        addLateButton(0.25);
        found.emplace(JTKTestSuite::element("Late"));
    });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->view(), late);
}

TEST_F(ElementWait, classGivenToTheWaitIsHonouredWhileWaiting) {
    // A plain view is named "Late" from the start; the awaited button comes later.
    auto early = add<desktop::View>(content, Rect{10, 200, 80, 20});
    name(early, "Late");
    std::optional<JTKElement> found;
    onQueue([&] {
        addLateButton(0.25);
        found.emplace(JTKTestSuite::waitForExistence("Late", jtkClass<desktop::Button>(), 1.0));
    });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->view(), late);
}

TEST_F(ElementWait, existenceIsAskedOnceWithoutWaiting) {
    auto hidden = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Hidden");
    hidden->setHidden(true);
    Clock::time_point start;
    bool hiddenExists = true, contentExists = false;
    onQueue([&] {
        start = Clock::now();
        hiddenExists = JTKTestSuite::elementExists("Hidden");
        contentExists = JTKTestSuite::elementExists("Content");
    });
    EXPECT_FALSE(hiddenExists);
    EXPECT_TRUE(contentExists);
    EXPECT_EQ(searchesSince(start).size(), 1u);
}

}  // namespace
