// The results of a run, test by test: each chosen test ends passed, failed
// or not run, with its duration, the first failure and the pictures that go
// with it. The record prints the progress lines and the closing summary and
// keeps the JUnit file current, so that a run that ends in any way (even
// killed) leaves a file that says what passed, what failed and which test
// was running. One record per process; every member is safe from any thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "run/JTKRunConfiguration.h"
#include "run/JTKRunOptions.h"

namespace jtk {

enum class JTKTestStatus { notRun, running, passed, failed };

struct JTKTestResult {
    std::string name;
    std::string file;  // where the test is declared
    int line = 0;
    JTKTestStatus status = JTKTestStatus::notRun;
    double seconds = 0;
    std::string failure;        // the first failure's one line
    std::string failureDetail;  // its further lines (expression, values)
    std::vector<std::filesystem::path> attachments;  // failure pictures, differing screenshots
};

// Screenshot counts of the whole run, for the summary.
struct JTKRunScreenshotTotals {
    int storedAsNew = 0, matched = 0, differed = 0, underThreshold = 0, notStored = 0;
};

class JTKTestResults {
public:
    static JTKTestResults& shared();

    // Starts the record: every test not run yet; writes the JUnit file.
    void begin(const std::string& suiteName, const JTKMethodList& tests, const JTKRunOptions& options);
    bool begun() const;

    // The test at index starts running (the JUnit file says so).
    void testStarted(size_t index);
    // The running test fails; only its first failure is kept. False when no
    // test is running. location is "file:line" or empty.
    bool failRunningTest(const std::string& message, const std::string& detail, const std::string& location);
    bool runningTestFailed() const;
    std::optional<std::string> runningTest() const;
    // How long the running test has run; none between tests.
    std::optional<double> runningSeconds() const;
    void attach(const std::filesystem::path& file);
    // The running test ends: passed unless it failed. Prints its progress
    // line and rewrites the JUnit file.
    void testFinished();

    void addScreenshots(const JTKRunScreenshotTotals& counts);
    JTKRunScreenshotTotals screenshotTotals() const;
    void setScreenshotFolder(std::filesystem::path folder);

    // Ends the record once: a test still running fails with why, the JUnit
    // file is written a last time and the summary printed. Later calls do nothing.
    void end(const std::string& why);
    // 0 when every chosen test passed and no screenshot differed, else 1.
    int strictStatus() const;

    std::vector<JTKTestResult> results() const;

private:
    void writeReport() const;  // lock held
    std::string progressPrefix(size_t index) const;

    mutable std::mutex mutex_;
    bool begun_ = false, ended_ = false;
    std::string suiteName_;
    JTKRunOptions options_;
    std::vector<JTKTestResult> tests_;
    std::optional<size_t> running_;
    std::chrono::steady_clock::time_point runStart_, testStart_;
    std::string timestamp_;
    JTKRunScreenshotTotals screenshots_;
    std::filesystem::path screenshotFolder_;
};

// "1.2 s", "0.05 s", "2 min 5 s": a duration as the progress lines give it.
std::string jtkDurationText(double seconds);

}  // namespace jtk
