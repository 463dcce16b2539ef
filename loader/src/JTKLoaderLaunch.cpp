// Before main: the loader's part of a launch. Preloaded, this library comes
// first in the symbol search, so the program's start code calls the
// __libc_start_main below, with main and the launch arguments, once every
// library is loaded and before any of the program's own code has run. For a
// test launch of a program of the loader's toolkit (loaderToolkit()) it
//   1. gives the framework the launch arguments as they are, with "uxtest"
//      added when the run was asked for by JTK_UXTEST=1, and
//      "fileSizeThresh=N" when JTK_FILE_SIZE_THRESHOLD=N is set;
//   2. loads the tests library, refusing a launch without one, with one
//      that cannot be loaded or one that holds no test;
//   3. answers a launch that only lists its tests, or whose runner options
//      are refused, there and then: the program never starts (so listing
//      needs no display);
//   4. prepares the toolkit (the fonts, which fontconfig reads once; the
//      display), which may refuse the launch;
//   5. gives the program a settings folder of its own (run/JTKRunSettings)
//      and points the toolkit's settings store at it;
//   6. calls glibc's __libc_start_main with the arguments the program
//      knows: its own, without the loader's (those containing "uxtest" or
//      "fileSizeThresh=", and those starting with "--jtk-").
// Every other process the library is preloaded into (a shell or a wrapper
// that starts the program, a program of another toolkit) is left as it is,
// its arguments and environment included: they are for the program.
#include "JTKLoaderLaunch.h"

#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <JTK/JTKRegistry.h>
#include <JTK/platform/Process.h>
#include <JTK/services/ProcessInfo.h>

#include "run/JTKProcessEnd.h"
#include "run/JTKRunConfiguration.h"
#include "run/JTKRunOptions.h"
#include "run/JTKRunSettings.h"
#include "run/JTKTestSelection.h"

namespace jtk::loader {

namespace {

constexpr std::string_view testsArgument = "--jtk-tests=";
constexpr const char* testsVariable = "JTK_TESTS_LIBRARY";
constexpr const char* launchVariable = "JTK_UXTEST";
constexpr const char* thresholdVariable = "JTK_FILE_SIZE_THRESHOLD";
constexpr int startFailureStatus = 2;

std::atomic<bool> prepared{false};

bool isLoaderArgument(std::string_view argument) {
    return argument.find("uxtest") != std::string_view::npos || argument.starts_with("--jtk-") ||
           argument.find("fileSizeThresh=") != std::string_view::npos;
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Whether an object of the process, other than this library and the
// toolkit's own libraries, needs the toolkit's program library: the program,
// or a library of its own, is a program of the loader's toolkit. (This
// library brings its toolkit into every process it is preloaded into, so the
// toolkit being there says nothing.)
struct ToolkitProgramSearch {
    std::string self;
    const LoaderToolkit& toolkit = loaderToolkit();
    bool found = false;
};

bool needs(const dl_phdr_info& object, const std::string& library) {
    for (int index = 0; index < object.dlpi_phnum; ++index) {
        const auto& header = object.dlpi_phdr[index];
        if (header.p_type != PT_DYNAMIC) continue;
        const auto* dynamic = reinterpret_cast<const ElfW(Dyn)*>(object.dlpi_addr + header.p_vaddr);
        ElfW(Addr) strings = 0;
        for (const auto* entry = dynamic; entry->d_tag != DT_NULL; ++entry)
            if (entry->d_tag == DT_STRTAB) strings = entry->d_un.d_ptr;
        if (strings == 0) return false;
        // The dynamic linker relocates the table's address in place for the
        // objects it loads; one it left as it was is relative to the object.
        if (strings < object.dlpi_addr) strings += object.dlpi_addr;
        for (const auto* entry = dynamic; entry->d_tag != DT_NULL; ++entry)
            if (entry->d_tag == DT_NEEDED && library == reinterpret_cast<const char*>(strings + entry->d_un.d_val))
                return true;
    }
    return false;
}

int visit(dl_phdr_info* object, size_t, void* data) {
    auto& search = *static_cast<ToolkitProgramSearch*>(data);
    std::string_view name = object->dlpi_name ? object->dlpi_name : "";
    std::string_view file = name.substr(name.rfind('/') == std::string_view::npos ? 0 : name.rfind('/') + 1);
    if (name == search.self || file.starts_with(search.toolkit.ownLibraryPrefix)) return 0;
    search.found = needs(*object, search.toolkit.programLibrary);
    return search.found ? 1 : 0;
}

bool isToolkitProgram() {
    ToolkitProgramSearch search;
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&isToolkitProgram), &self) && self.dli_fname) search.self = self.dli_fname;
    dl_iterate_phdr(visit, &search);
    return search.found;
}

void giveTheFrameworkItsArguments(std::vector<std::string> arguments, bool requestedByEnvironment) {
    if (requestedByEnvironment && !platform::argumentsRequestTesting(arguments)) arguments.push_back("uxtest");
    // Last: a fileSizeThresh= argument of the command line, read first, wins.
    if (auto threshold = environmentValue(thresholdVariable); !threshold.empty())
        arguments.push_back("fileSizeThresh=" + threshold);
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    services::setProcessArguments(static_cast<int>(pointers.size()), pointers.data());
}

std::optional<std::string> testsLibraryPath() {
    for (const auto& argument : platform::processArguments())
        if (argument.starts_with(testsArgument)) return argument.substr(testsArgument.size());
    if (const char* path = std::getenv(testsVariable)) return std::string(path);
    return std::nullopt;
}

bool hasTests() {
    for (const auto& method : JTKRegistry::methods())
        if (std::string_view(method.name).starts_with("test")) return true;
    return false;
}

// Its tests and providers register in the framework as it loads.
void loadTestsLibrary() {
    auto path = testsLibraryPath();
    if (!path || path->empty())
        refuseLaunch("no tests library named: pass --jtk-tests=PATH or set " + std::string(testsVariable));
    // RTLD_NOW: a library missing a symbol is refused here, not halfway through a test.
    if (!dlopen(path->c_str(), RTLD_NOW | RTLD_GLOBAL))
        refuseLaunch("cannot load the tests library: " + std::string(dlerror()));
    if (!hasTests()) refuseLaunch("the tests library " + *path + " has no JTK_TEST");
}

// A launch that only lists its tests, or whose runner options are refused,
// needs nothing of the program: the runner answers it now and ends the
// process (status 0 for a list, 2 for a refusal).
void answerWhatNeedsNoProgram() {
    if (!jtkRunOptions().list && jtkRunOptionErrors().empty()) return;
    const auto methods = JTKRegistry::methods();
    jtkChooseTests(methods, jtkMergeTestOptions(methods));
}

void giveTheProgramItsOwnSettings() {
    std::optional<std::filesystem::path> testSettings;
    if (auto path = jtkTextProvider(JTKRegistry::methods(), "jtkTestSettingsPath")) {
        std::error_code error;
        auto absolute = std::filesystem::absolute(*path, error);
        testSettings = error ? std::filesystem::path(*path) : absolute;
    }
    if (auto failure = jtkMakeRunSettings(testSettings); !failure.empty()) refuseLaunch(failure);
    if (auto toolkitSettings = loaderToolkit().useRunSettings) toolkitSettings(*jtkRunSettingsFolder());
}

// The program's arguments: argv[0] and every argument that is not the loader's.
char** programArguments(int argc, char** argv, int& programArgc) {
    auto* kept = new std::vector<char*>;  // never freed: the program may keep pointers into it
    for (int index = 0; index < argc; ++index)
        if (index == 0 || !isLoaderArgument(argv[index])) kept->push_back(argv[index]);
    programArgc = static_cast<int>(kept->size());
    kept->push_back(nullptr);
    return kept->data();
}

}  // namespace

bool launchPrepared() { return prepared; }

void refuseLaunch(const std::string& why) {
    std::fflush(stdout);
    std::fprintf(stderr, "JTK: %s; no test ran\n", why.c_str());
    // The program's own objects may be alive on its stack: jtkExitProcess
    // leaves without their destructors, once the settings folder is gone.
    jtkExitProcess(startFailureStatus);
}

void refuseUnpreparedLaunch() {
    refuseLaunch("the launch was not prepared before the program's main (is the loader preloaded with LD_PRELOAD, "
                 "and the program a " + loaderToolkit().name + " program?)");
}

}  // namespace jtk::loader

using MainFunction = int (*)(int, char**, char**);
using StartMainFunction = int (*)(MainFunction, int, char**, MainFunction, void (*)(), void (*)(), void*);

extern "C" int __libc_start_main(MainFunction main, int argc, char** argv, MainFunction init, void (*fini)(),
                                 void (*rtldFini)(), void* stackEnd) {
    using namespace jtk::loader;
    auto startMain = reinterpret_cast<StartMainFunction>(dlsym(RTLD_NEXT, "__libc_start_main"));
    if (!startMain) {
        std::fprintf(stderr, "JTK: the C library's __libc_start_main is not there: %s\n", dlerror());
        std::_Exit(127);
    }
    std::vector<std::string> arguments(argv, argv + argc);
    const std::string requested = environmentValue(launchVariable);
    const bool requestedByEnvironment = requested == "1";
    if (!jtk::platform::argumentsRequestTesting(arguments) && (requested.empty() || requested == "0"))
        return startMain(main, argc, argv, init, fini, rtldFini, stackEnd);
    if (!isToolkitProgram()) {
        if (auto watch = loaderToolkit().watchForLateToolkit) watch();
        return startMain(main, argc, argv, init, fini, rtldFini, stackEnd);
    }

    if (!requested.empty() && requested != "0" && !requestedByEnvironment)
        refuseLaunch(std::string(launchVariable) + "=" + requested + " is neither 1 (start a test run) nor 0");
    // A program this one starts is not under test: it sees no request.
    unsetenv(launchVariable);
    giveTheFrameworkItsArguments(arguments, requestedByEnvironment);
    loadTestsLibrary();
    answerWhatNeedsNoProgram();
    if (auto prepare = loaderToolkit().prepare) prepare();
    giveTheProgramItsOwnSettings();
    prepared = true;

    int programArgc = 0;
    char** programArgv = programArguments(argc, argv, programArgc);
    return startMain(main, programArgc, programArgv, init, fini, rtldFini, stackEnd);
}
