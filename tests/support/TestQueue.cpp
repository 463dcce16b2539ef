#include "TestQueue.h"

#include <gtest/gtest.h>

#include <atomic>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Dispatch.h"

using namespace jtk;

namespace testsupport {

void runOnTestQueue(const std::function<void()>& body, double timeoutSeconds) {
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
    std::atomic<bool> finished{false};
    {
        auto queue = platform::makeSerialQueue("TestBodyQueue");
        queue->async([&] {
            body();
            finished = true;
            loop.wakeUp();
        });
        loop.runMode(platform::RunLoopMode::defaultMode, desktop::Clock::now() + desktop::RunLoop::toDuration(timeoutSeconds),
                     [&] { return finished.load(); });
        ASSERT_TRUE(finished.load()) << "test body did not finish within " << timeoutSeconds << " s";
    }
}

void pumpMainLoop(double seconds) {
    desktop::RunLoop::main().adoptCurrentThreadAsMain();
    desktop::RunLoop::main().runFor(seconds);
}

}  // namespace testsupport
