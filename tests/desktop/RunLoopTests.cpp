// The main run loop's modes: timers of the common modes fire inside a nested
// modal loop while default-mode ones wait. (The main queue served inside a
// menu's tracking loop is checked by the menu tests.)
#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/RunLoop.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;
using namespace std::chrono_literals;
using RunLoop = DesktopTest;

TEST_F(RunLoop, commonModeTimersFireInsideANestedModalLoopAndDefaultOnesWait) {
    auto& loop = desktop::RunLoop::main();
    int common = 0, defaultOnly = 0;
    auto t1 = platform::scheduleTimer(0.01, true, [&](platform::Timer&) { ++common; }, true);
    auto t2 = platform::scheduleTimer(0.01, true, [&](platform::Timer&) { ++defaultOnly; }, false);
    loop.runMode(platform::RunLoopMode::modalPanel, desktop::Clock::now() + 100ms);
    EXPECT_GT(common, 2);
    EXPECT_EQ(defaultOnly, 0);
    loop.runFor(0.05);
    EXPECT_GT(defaultOnly, 0);
    t1->invalidate();
    t2->invalidate();
}
