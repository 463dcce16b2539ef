#include "ServicesStart.h"

#include "JTK/desktop/RunLoop.h"
#include "JTK/services/BackendHooks.h"

namespace jtk::desktop {

void startServices(RunLoop& mainLoop) {
    // The loop is passed in, not asked for: RunLoop::main() is still making it.
    services::installBackendHooks(
        {.dispatchAsyncMain = [&mainLoop](std::function<void()> work) { mainLoop.perform(std::move(work)); }});
}

}  // namespace jtk::desktop
