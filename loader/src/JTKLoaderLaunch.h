// The two halves of a loaded launch: prepared before the program's main
// (JTKLoaderLaunch.cpp, the same for every toolkit) and started once the
// program's toolkit is running (JTKQtLoader.cpp, JTKGtkLoader.cpp). What the
// launch needs of the toolkit, each loader says in its LoaderToolkit.
#pragma once

#include <filesystem>
#include <string>

namespace jtk::loader {

struct LoaderToolkit {
    // In messages: "Qt 5", "GTK 4".
    std::string name;
    // The toolkit's library that every program of it needs ("libQt5Core.so.5",
    // "libgtk-4.so.1"), and the file-name start of the toolkit's own libraries
    // ("libQt5", "libgtk-4"), which need it without being programs.
    std::string programLibrary;
    std::string ownLibraryPrefix;
    // Before main, once the tests library is loaded: what the toolkit reads
    // once, as it starts (the fonts, the display). May refuse the launch.
    void (*prepare)() = nullptr;
    // Before main, once the run's settings folder is $XDG_CONFIG_HOME: points
    // the toolkit's own settings store there. May refuse the launch.
    void (*useRunSettings)(const std::filesystem::path& folder) = nullptr;
    // Before main, for a test launch of a process that is no program of the
    // toolkit (yet): a toolkit whose start would not notice a program that
    // loads it only once it runs watches for one here, to refuse its run.
    void (*watchForLateToolkit)() = nullptr;
};

// Defined once by each loader.
const LoaderToolkit& loaderToolkit();

// True once a test launch has been prepared before main: the framework has
// the launch arguments, the tests library is loaded and the program has a
// settings folder of its own.
bool launchPrepared();

// Ends the process before a run has started: "JTK: <why>; no test ran" on
// standard error, the run's settings folder removed, exit status 2. Nothing
// of the user's has been touched at that point.
[[noreturn]] void refuseLaunch(const std::string& why);

// The refusal of a run whose launch was not prepared before main (the loader
// not preloaded, or a program that loads its toolkit only once it runs).
[[noreturn]] void refuseUnpreparedLaunch();

}  // namespace jtk::loader
