// The Qt loaders: JTK and a Qt backend in one shared library that LD_PRELOAD
// brings into a Qt program built without JTK.
//
//     LD_PRELOAD=libjtk-qt5-loader.so JTK_UXTEST=1 JTK_TESTS_LIBRARY=libmytests.so program
//     LD_PRELOAD=libjtk-qt5-loader.so program uxtest --jtk-tests=libmytests.so
//
// Nothing happens unless JTK_UXTEST=1 is set or a launch argument contains
// "uxtest". Before main (JTKLoaderLaunch.cpp) the tests library is loaded,
// the fonts are pinned, the program is given a settings folder of its own
// and the loader's arguments are taken out of the program's. Here, once the
// program's event loop turns, its windows made, the run starts as in an
// application built with JTK. The tests library links this library, so its
// tests register where the run looks for them.
//
// Whatever stops a run before it starts (a tests library missing, one that
// cannot be loaded or holds no test, no QApplication) is one line on
// standard error and exit status 2, before any of the user's data has been
// moved.
#include <QApplication>
#include <QCoreApplication>
#include <QTimer>
#include <QtGlobal>
#include <string>

#include <JTK/JTKTestSuite.h>
#include <JTK/qt/QtBackend.h>

#include "JTKLoaderLaunch.h"

namespace jtk::loader {

// A Qt program needs Qt's core library of its Qt version. Fontconfig reads
// its configuration once: the fonts are pinned before main.
const LoaderToolkit& loaderToolkit() {
    static const LoaderToolkit toolkit{
        .name = "Qt " + std::to_string(QT_VERSION_MAJOR),
        .programLibrary = "libQt" + std::to_string(QT_VERSION_MAJOR) + "Core.so." + std::to_string(QT_VERSION_MAJOR),
        .ownLibraryPrefix = "libQt" + std::to_string(QT_VERSION_MAJOR),
        .prepare = [] { jtk::qt::prepareFontConfiguration(); },
    };
    return toolkit;
}

}  // namespace jtk::loader

namespace {

void startTheRun() {
    using jtk::loader::refuseLaunch;
    if (!jtk::loader::launchPrepared()) jtk::loader::refuseUnpreparedLaunch();
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        refuseLaunch("this program has no QApplication (its " +
                     std::string(QCoreApplication::instance()->metaObject()->className()) +
                     " has no widgets to test)");
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
    QTimer::singleShot(0, QCoreApplication::instance(), &startTheRun);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(startWhenTheEventLoopTurns)
