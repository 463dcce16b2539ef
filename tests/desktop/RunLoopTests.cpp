#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/RunLoop.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

using namespace std::chrono_literals;

TEST(RunLoop, MainQueueWorkFromAnotherThreadRunsOnTheMainThreadInOrder) {
    std::vector<int> order;
    testsupport::runOnTestQueue([&] {
        for (int i = 0; i < 5; ++i) platform::dispatchAsyncMain([&order, i] { order.push_back(i); });
        bool onMain = false;
        platform::dispatchSyncMain([&] { onMain = platform::isMainThread(); });
        EXPECT_TRUE(onMain);
    });
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(RunLoop, CommonModeTimersFireInsideANestedModalLoopAndDefaultOnesWait) {
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
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

TEST(RunLoop, MainQueueIsServedWhileANestedLoopRunsAndStopEndsOnlyTheInnerLevel) {
    auto& loop = desktop::RunLoop::main();
    bool innerEnded = false, outerSawIt = false;
    testsupport::runOnTestQueue([&] {
        platform::dispatchSyncMain([&] {
            // A nested tracking loop started from main-queue work.
            platform::dispatchAfterMain(0.02, [&] { loop.stop(); });
            loop.runMode(platform::RunLoopMode::eventTracking);
            innerEnded = true;
        });
        platform::dispatchSyncMain([&] { outerSawIt = innerEnded; });
    });
    EXPECT_TRUE(outerSawIt);
}

TEST(SerialQueue, RunsWorkInOrderAndDelayedWorkWhenDue) {
    auto queue = platform::makeSerialQueue("q");
    std::vector<int> order;
    std::atomic<bool> done{false};
    queue->after(0.03, [&] {
        order.push_back(3);
        done = true;
    });
    queue->async([&] { order.push_back(1); });
    queue->sync([&] { order.push_back(2); });
    while (!done) std::this_thread::sleep_for(1ms);
    queue->sync([] {});
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(queue->label(), "q");
}
