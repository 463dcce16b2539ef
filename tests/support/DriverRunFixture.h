// Whole test launches of tests/programs/driverTestApp in a child process,
// each in a scratch folder of its own with user data to protect.
#pragma once

#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "run/JTKShell.h"
#include "tests/support/TestFiles.h"

namespace testsupport {

using Lines = std::vector<std::string>;

struct ChildRun {
    int status = -1;
    Lines output, errors;
    std::chrono::steady_clock::time_point ended;
};

class DriverRun : public testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/jtk-driver-run-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root = pattern;
        appSupport = root / "data" / "driverTestApp";
        temp = root / "data" / "driverTestApp_Temp";
        writeFile(appSupport / "user.txt", "mine");
        writeFile(root / "testdata" / "a.txt", "A");
    }

    void TearDown() override {
        // A run left waiting by a failed test: only if it is still the one this test started.
        std::error_code error;
        if (waiting > 0 && fs::read_symlink("/proc/" + std::to_string(waiting) + "/exe", error).filename() ==
                               "driverTestApp")
            kill(waiting, SIGKILL);
        fs::remove_all(root, error);
    }

    // The environment and the working folder of a launch, as a shell command prefix.
    std::string environment(const std::string& mode, const std::string& screenshots = "") {
        return "cd " + quoted(root.string()) + " && export XDG_DATA_HOME=" + quoted((root / "data").string()) +
               " XDG_CONFIG_HOME=" + quoted((root / "config").string()) + " DRIVER_MODE=" + quoted(mode) +
               " DRIVER_TEST_DATA=" + quoted((root / "testdata").string()) + " DRIVER_SCREENSHOTS=" +
               quoted(screenshots.empty() ? (root / "shots").string() : screenshots) + "; ";
    }

    static std::string application() { return quoted((binDirectory() / "driverTestApp").string()); }

    ChildRun run(const std::string& mode, const std::string& argument = "-uxtest",
                 const std::string& screenshots = "") {
        return shell(environment(mode, screenshots) + "timeout -s KILL 120 " + application() + " " +
                     quoted(argument));
    }

    // Runs a shell script; the last line of a script that ends with
    // `echo status=$?` is taken as the status.
    ChildRun shell(const std::string& script) {
        auto result = jtk::runShellCommand(script);
        ChildRun child{result.status, result.outputLines, result.errorLines, std::chrono::steady_clock::now()};
        if (!child.output.empty() && child.output.back().starts_with("status=")) {
            child.status = std::stoi(child.output.back().substr(7));
            child.output.pop_back();
        }
        for (const auto& line : child.errors)
            for (const char* fault : {"Sanitizer", "runtime error"})
                EXPECT_EQ(line.find(fault), std::string::npos) << testing::PrintToString(child.errors);
        // The idle wait's own lines depend on the machine's load.
        std::erase_if(child.output, [](const std::string& line) {
            return line.starts_with("wait duration = ") || line == "Couldn't determine idle state - timing out";
        });
        // Durations differ from run to run: "(1.2 s)" and "in 3 s" read as T.
        static const std::regex duration("([0-9]+ min )?[0-9]+(\\.[0-9]+)? s\\b");
        for (auto& line : child.output) line = std::regex_replace(line, duration, "T");
        return child;
    }

    // The process id a run in "wait" mode wrote once it reached testEnd.
    pid_t waitUntilReady() {
        for (int i = 0; i < 1200; ++i) {
            std::ifstream in(root / "ready");
            pid_t pid = 0;
            if (in >> pid) return waiting = pid;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        ADD_FAILURE() << "the run never reached testEnd";
        return 0;
    }

    // Beside the user's data after a run: nothing at all (no aside folder,
    // no record of one, no test data waiting to be deleted, no lock).
    void expectUserDataBack() {
        EXPECT_EQ(filesBelow(appSupport, true), Lines{"user.txt=mine"});
        EXPECT_EQ(namesIn(root / "data"), Lines{appSupport.filename()});
    }

    fs::path root, appSupport, temp;
    pid_t waiting = 0;
};

}  // namespace testsupport
