// A tests library that configures a run and holds no test: the loader
// refuses it.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("calculator"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("calculator"); }
