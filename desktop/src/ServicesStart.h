// The desktop's start, as the shared services see it: they get the main
// queue from here (the reset of the standard defaults comes with the
// defaults, UserFolders.cpp).
#pragma once

namespace jtk::desktop {

class RunLoop;

// Called once, by RunLoop::main(), as the main loop is made.
void startServices(RunLoop& mainLoop);

}  // namespace jtk::desktop
