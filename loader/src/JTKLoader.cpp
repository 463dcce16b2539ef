// The loader: JTK and its Qt 5 backend in one shared library that LD_PRELOAD
// brings into a Qt program built without JTK.
//
//     LD_PRELOAD=libjtk-qt5-loader.so program uxtest --jtk-tests=libmytests.so
//
// Nothing happens unless a launch argument contains "uxtest". Then the fonts
// are pinned before the program starts (pictures must not depend on the
// machine's fonts), and once the program's event loop turns, its windows
// made, the tests library is loaded and the run starts as in an application
// built with JTK. The tests library is named by --jtk-tests=PATH or, without
// that argument, by the JTK_TESTS_LIBRARY environment variable; it links this
// library, so its tests register where the run looks for them.
//
// Whatever stops a run before it starts (no QApplication, no tests library,
// one that cannot be loaded or holds no test) is one line on standard error
// and exit status 2, before any of the user's data has been moved.
#include <dlfcn.h>

#include <QApplication>
#include <QCoreApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include <JTK/JTKRegistry.h>
#include <JTK/JTKTestSuite.h>
#include <JTK/platform/Process.h>
#include <JTK/qt/QtBackend.h>

namespace {

constexpr std::string_view testsArgument = "--jtk-tests=";
constexpr const char* testsVariable = "JTK_TESTS_LIBRARY";
constexpr int startFailureStatus = 2;

[[noreturn]] void stopBeforeTheRun(const std::string& why) {
    std::fflush(stdout);
    std::fprintf(stderr, "JTK: %s; no test ran\n", why.c_str());
    std::fflush(stderr);
    // Nothing of the run exists yet, and the program's own objects are still
    // alive on its stack: leave without running their destructors.
    std::_Exit(startFailureStatus);
}

std::optional<std::string> testsLibraryPath() {
    for (const auto& argument : jtk::platform::processArguments())
        if (argument.starts_with(testsArgument)) return argument.substr(testsArgument.size());
    if (const char* path = std::getenv(testsVariable)) return std::string(path);
    return std::nullopt;
}

bool hasTests() {
    for (const auto& method : jtk::JTKRegistry::methods())
        if (std::string_view(method.name).starts_with("test")) return true;
    return false;
}

void loadTestsAndRun() {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        stopBeforeTheRun("this program has no QApplication (its " +
                         std::string(QCoreApplication::instance()->metaObject()->className()) +
                         " has no widgets to test)");
    auto path = testsLibraryPath();
    if (!path || path->empty())
        stopBeforeTheRun("no tests library named: pass --jtk-tests=PATH or set " + std::string(testsVariable));
    // RTLD_NOW: a library missing a symbol is refused here, not halfway through a test.
    if (!dlopen(path->c_str(), RTLD_NOW | RTLD_GLOBAL)) stopBeforeTheRun("cannot load the tests library: " + std::string(dlerror()));
    if (!hasTests()) stopBeforeTheRun("the tests library " + *path + " has no JTK_TEST");

    jtk::qt::installBackend(*application);
    jtk::JTKTestSuite::runTests();
}

// Runs inside the making of the application object, so the object is not
// yet what it will be (a QApplication is still a QCoreApplication here): the
// run waits for the event loop.
void startWhenTheEventLoopTurns() {
    if (!jtk::JTKTestSuite::isTesting()) return;
    // Before the program makes its widgets, so that fonts it derives from
    // the default have one size on every Qt platform.
    jtk::qt::setTestFont();
    QTimer::singleShot(0, QCoreApplication::instance(), &loadTestsAndRun);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(startWhenTheEventLoopTurns)

// Before main: fontconfig reads its configuration once, when the program
// first uses a font, so it is pointed at JTK's here.
[[gnu::constructor]] static void pinFontsForATestRun() {
    if (jtk::JTKTestSuite::isTesting()) jtk::qt::prepareFontConfiguration();
}
