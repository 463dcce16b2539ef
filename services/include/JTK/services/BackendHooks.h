// What the shared services need from the backend that runs them, handed in
// by the backend when it starts, so that the services never call up into a
// backend and link as an ordinary lower layer.
//
//   services::installBackendHooks({
//       .dispatchAsyncMain = [](std::function<void()> work) { myMainQueue.post(std::move(work)); },
//       .resetStandardUserDefaults = [] { myDefaults.reset(); },
//   });
#pragma once

#include <functional>

namespace jtk::services {

struct BackendHooks {
    // Queues work for the main thread, after the work queued before it; any
    // thread. It only queues: it never runs the work before it returns.
    std::function<void(std::function<void()>)> dispatchAsyncMain = nullptr;
    // Makes the standard user defaults forget what they read, so that the next
    // use reads the stored defaults again (after the application's name changed).
    std::function<void()> resetStandardUserDefaults = nullptr;
};

// Installs the hooks given; a hook left empty keeps the one installed before,
// so a backend may hand each in where the thing it serves is made. Work the
// services queued for the main thread before a main queue was installed is
// handed over then, in order.
void installBackendHooks(BackendHooks hooks);

// The services' side of the hooks. Until a backend has started, main-thread
// work waits and a reset of the defaults does nothing (nothing was read).
void dispatchAsyncMain(std::function<void()> work);
void resetStandardUserDefaults();

}  // namespace jtk::services
