// The main run loop's modes: timers of the common modes fire inside a nested
// modal loop while default-mode ones wait. (The main queue served inside a
// menu's tracking loop is checked by the menu tests.) Tasks and events keep
// their arrival order.
#include "JTK/desktop/EventRouting.h"
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

TEST_F(RunLoop, tasksAndEventsRunInTheOrderTheyArrived) {
    auto& loop = desktop::RunLoop::main();
    std::vector<std::string> order;
    loop.setEventHandler([&](std::shared_ptr<platform::Event> event) { order.push_back("event" + std::to_string(event->keyCode)); });
    auto post = [&](uint16_t code) {
        auto event = std::make_shared<platform::Event>();
        event->keyCode = code;
        loop.enqueueEvent(event);
    };
    post(0);
    post(1);
    loop.perform([&] { order.push_back("task"); });  // a read after two events waits for both
    post(2);
    loop.runFor(0.05);
    loop.setEventHandler([](std::shared_ptr<platform::Event> event) { desktop::routeEvent(std::move(event)); });
    EXPECT_EQ(order, (std::vector<std::string>{"event0", "event1", "task", "event2"}));
}
