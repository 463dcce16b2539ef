#include "run/JTKTestResults.h"

#include <cstdio>
#include <ctime>

#include "run/JTKConsole.h"
#include "run/JTKAtomicFile.h"
#include "run/JTKJUnitReport.h"

namespace jtk {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

std::string utcTimestamp() {
    std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    return text;
}

const char* statusWord(JTKTestStatus status) {
    switch (status) {
        case JTKTestStatus::passed: return "passed";
        case JTKTestStatus::failed: return "failed";
        case JTKTestStatus::running: return "running";
        case JTKTestStatus::notRun: return "not run";
    }
    return "";
}

}  // namespace

std::string jtkDurationText(double seconds) {
    char text[48];
    if (seconds < 10) std::snprintf(text, sizeof text, "%.2g s", seconds < 0.005 ? 0.0 : seconds);
    else if (seconds < 60) std::snprintf(text, sizeof text, "%.0f s", seconds);
    else std::snprintf(text, sizeof text, "%d min %d s", static_cast<int>(seconds) / 60, static_cast<int>(seconds) % 60);
    return text;
}

JTKTestResults& JTKTestResults::shared() {
    static JTKTestResults* instance = new JTKTestResults;  // never destroyed: ends of a run may come late
    return *instance;
}

void JTKTestResults::begin(const std::string& suiteName, const JTKMethodList& tests, const JTKRunOptions& options) {
    std::lock_guard lock(mutex_);
    begun_ = true;
    suiteName_ = suiteName;
    options_ = options;
    tests_.clear();
    for (const auto& test : tests) {
        JTKTestResult result;
        result.name = test.name;
        result.file = test.file;
        result.line = test.line;
        tests_.push_back(std::move(result));
    }
    runStart_ = Clock::now();
    timestamp_ = utcTimestamp();
    writeReport();
}

bool JTKTestResults::begun() const {
    std::lock_guard lock(mutex_);
    return begun_;
}

std::string JTKTestResults::progressPrefix(size_t index) const {
    return "[" + std::to_string(index + 1) + "/" + std::to_string(tests_.size()) + "] " + tests_[index].name;
}

void JTKTestResults::testStarted(size_t index) {
    std::lock_guard lock(mutex_);
    if (ended_ || index >= tests_.size()) return;
    running_ = index;
    tests_[index].status = JTKTestStatus::running;
    testStart_ = Clock::now();
    writeReport();
}

bool JTKTestResults::failRunningTest(const std::string& message, const std::string& detail, const std::string& location) {
    std::lock_guard lock(mutex_);
    if (!running_) return false;
    auto& test = tests_[*running_];
    if (test.failure.empty()) {
        test.failure = message;
        test.failureDetail = location.empty() ? detail : "at " + location + (detail.empty() ? "" : "\n" + detail);
    }
    test.status = JTKTestStatus::failed;
    jtkPrintLine("JTK: " + test.name + " failed" + (location.empty() ? "" : " at " + location) + ": " + message);
    for (size_t start = 0; start < detail.size();) {
        size_t end = detail.find('\n', start);
        if (end == std::string::npos) end = detail.size();
        jtkPrintLine("  " + detail.substr(start, end - start));
        start = end + 1;
    }
    return true;
}

bool JTKTestResults::runningTestFailed() const {
    std::lock_guard lock(mutex_);
    return running_ && tests_[*running_].status == JTKTestStatus::failed;
}

std::optional<double> JTKTestResults::runningSeconds() const {
    std::lock_guard lock(mutex_);
    if (!running_) return std::nullopt;
    return secondsSince(testStart_);
}

std::optional<std::string> JTKTestResults::runningTest() const {
    std::lock_guard lock(mutex_);
    if (!running_) return std::nullopt;
    return tests_[*running_].name;
}

void JTKTestResults::attach(const fs::path& file) {
    std::lock_guard lock(mutex_);
    if (running_) tests_[*running_].attachments.push_back(file);
}

void JTKTestResults::testFinished() {
    std::lock_guard lock(mutex_);
    if (!running_ || ended_) return;
    auto& test = tests_[*running_];
    test.seconds = secondsSince(testStart_);
    if (test.status == JTKTestStatus::running) test.status = JTKTestStatus::passed;
    jtkPrintLine(progressPrefix(*running_) + " … " + statusWord(test.status) + " (" + jtkDurationText(test.seconds) +
                 ")");
    running_.reset();
    writeReport();
}

void JTKTestResults::addScreenshots(const JTKRunScreenshotTotals& counts) {
    std::lock_guard lock(mutex_);
    screenshots_.storedAsNew += counts.storedAsNew;
    screenshots_.matched += counts.matched;
    screenshots_.differed += counts.differed;
    screenshots_.underThreshold += counts.underThreshold;
    screenshots_.notStored += counts.notStored;
}

JTKRunScreenshotTotals JTKTestResults::screenshotTotals() const {
    std::lock_guard lock(mutex_);
    return screenshots_;
}

void JTKTestResults::setScreenshotFolder(fs::path folder) {
    std::lock_guard lock(mutex_);
    screenshotFolder_ = std::move(folder);
}

void JTKTestResults::end(const std::string& why) {
    std::lock_guard lock(mutex_);
    if (!begun_ || ended_) return;
    if (running_) {
        auto& test = tests_[*running_];
        test.seconds = secondsSince(testStart_);
        if (test.failure.empty()) test.failure = why;
        test.status = JTKTestStatus::failed;
        jtkPrintLine(progressPrefix(*running_) + " … failed (" + jtkDurationText(test.seconds) + "): " + test.failure);
        running_.reset();
    }
    ended_ = true;
    writeReport();

    int passed = 0, failed = 0, notRun = 0;
    for (const auto& test : tests_) {
        if (test.status == JTKTestStatus::passed) ++passed;
        else if (test.status == JTKTestStatus::failed) ++failed;
        else ++notRun;
    }
    jtkPrintLine("JTK: " + std::to_string(passed) + " passed, " + std::to_string(failed) + " failed, " +
                 std::to_string(notRun) + " not run, of " + std::to_string(tests_.size()) + " tests in " +
                 jtkDurationText(secondsSince(runStart_)));
    for (const auto& test : tests_)
        if (test.status == JTKTestStatus::failed)
            jtkPrintLine("JTK: Failed: " + test.name + " (" + test.file + ":" + std::to_string(test.line) + "): " +
                         test.failure);
    const auto& s = screenshots_;
    if (!screenshotFolder_.empty())
        jtkPrintLine("JTK: Screenshots: " + std::to_string(s.storedAsNew) + " stored as new, " +
                     std::to_string(s.matched) + " matched, " + std::to_string(s.differed) + " differed, " +
                     std::to_string(s.underThreshold) + " under the size threshold" +
                     (s.notStored ? ", " + std::to_string(s.notStored) + " could not be stored" : std::string()) +
                     "; look in " + screenshotFolder_.string());
    if (options_.junitFile) jtkPrintLine("JTK: Results: " + options_.junitFile->string());
    bool anyFailed = false;
    for (const auto& test : tests_) anyFailed = anyFailed || test.status == JTKTestStatus::failed;
    if (anyFailed && options_.picturesFolder()) jtkPrintLine("JTK: Failure pictures: " + options_.picturesFolder()->string());
}

int JTKTestResults::strictStatus() const {
    std::lock_guard lock(mutex_);
    if (tests_.empty() || screenshots_.differed > 0 || screenshots_.notStored > 0) return 1;
    for (const auto& test : tests_)
        if (test.status != JTKTestStatus::passed) return 1;
    return 0;
}

std::vector<JTKTestResult> JTKTestResults::results() const {
    std::lock_guard lock(mutex_);
    return tests_;
}

void JTKTestResults::writeReport() const {
    if (!options_.junitFile) return;
    auto xml = jtkJUnitXml(suiteName_, tests_, secondsSince(runStart_), timestamp_);
    if (auto error = jtkWriteFileAtomically(*options_.junitFile, xml); !error.empty())
        jtkPrintLine("JTK: cannot write the results file " + options_.junitFile->string() + ": " + error);
}

}  // namespace jtk
