// Must not compile: the run finds tests by the prefix "test", so a test named
// otherwise would silently never run.
#include <JTK/JTK.h>

JTK_TEST(loginWorks) {}
