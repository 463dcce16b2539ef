// The platform's main-queue operations, on the main run loop.
#include <future>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Dispatch.h"

namespace jtk::platform {

bool isMainThread() { return desktop::RunLoop::main().isMainThread(); }

void dispatchSyncMain(std::function<void()> work) {
    auto& loop = desktop::RunLoop::main();
    if (loop.isMainThread()) {
        work();
        return;
    }
    std::promise<void> done;
    loop.perform([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void dispatchAsyncMain(std::function<void()> work) { desktop::RunLoop::main().perform(std::move(work)); }

void dispatchAfterMain(double seconds, std::function<void()> work) {
    desktop::RunLoop::main().addTimer(seconds, false, [work = std::move(work)](Timer&) { work(); }, true);
}

}  // namespace jtk::platform
