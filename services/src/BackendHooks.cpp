#include "JTK/services/BackendHooks.h"

#include <mutex>
#include <utility>
#include <vector>

namespace jtk::services {

namespace {

struct InstalledHooks {
    std::mutex mutex;
    BackendHooks hooks;
    std::vector<std::function<void()>> waitingForMain;
};

InstalledHooks& installed() {
    static auto* hooks = new InstalledHooks;  // never destroyed: any thread may post while the process ends
    return *hooks;
}

}  // namespace

void installBackendHooks(BackendHooks hooks) {
    auto& state = installed();
    std::lock_guard lock(state.mutex);
    if (hooks.resetStandardUserDefaults) state.hooks.resetStandardUserDefaults = std::move(hooks.resetStandardUserDefaults);
    if (!hooks.dispatchAsyncMain) return;
    state.hooks.dispatchAsyncMain = std::move(hooks.dispatchAsyncMain);
    // Under the lock, so that work queued meanwhile cannot overtake it; the
    // hook only queues, it runs nothing.
    for (auto& work : state.waitingForMain) state.hooks.dispatchAsyncMain(std::move(work));
    state.waitingForMain.clear();
}

void dispatchAsyncMain(std::function<void()> work) {
    auto& state = installed();
    std::function<void(std::function<void()>)> dispatch;
    {
        std::lock_guard lock(state.mutex);
        if (!state.hooks.dispatchAsyncMain) {
            state.waitingForMain.push_back(std::move(work));
            return;
        }
        dispatch = state.hooks.dispatchAsyncMain;
    }
    dispatch(std::move(work));
}

void resetStandardUserDefaults() {
    std::function<void()> reset;
    {
        std::lock_guard lock(installed().mutex);
        reset = installed().hooks.resetStandardUserDefaults;
    }
    if (reset) reset();
}

}  // namespace jtk::services
