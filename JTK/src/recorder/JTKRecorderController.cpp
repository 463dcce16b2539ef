#include "recorder/JTKRecorderController.h"

#include <chrono>
#include <mutex>
#include <thread>

#include "JTK/JTKNotifications.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Process.h"
#include "recorder/JTKRecorder.h"
#include "recorder/JTKSourceFile.h"
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"

namespace jtk {

namespace {

// How often a recording's waiting thread looks whether the recording has ended.
constexpr auto recordingPoll = std::chrono::milliseconds(500);

}  // namespace

JTKRecorderController& JTKRecorderController::shared() {
    // Never destroyed: the notification blocks refer to it until the process ends.
    static JTKRecorderController* controller = new JTKRecorderController();
    return *controller;
}

JTKRecorderController::JTKRecorderController() {
    auto& center = platform::defaultNotificationCenter();
    center.addObserver(JTKTestSuiteStatusUpdate, {}, platform::DeliveryQueue::mainQueue,
                       [this](const platform::Notification& notification) {
                           const std::string* text = notification.object.text();
                           setStatusTitle(text ? *text : std::string{});
                       });
    center.addObserver(JTKTestSuiteAllTestsCompleted, {}, platform::DeliveryQueue::mainQueue,
                       [this](const platform::Notification&) { setStatusTitle(recordTitle); });
}

std::shared_ptr<platform::StatusItem> JTKRecorderController::recordMenuItem() {
    if (!recordMenuItem_) {
        recordMenuItem_ = platform::statusItemWithLength(platform::variableStatusItemLength);
        // A platform without a status bar: recording from the status item is not offered.
        static std::once_flag said;
        if (!recordMenuItem_)
            std::call_once(said, [] { platform::systemLog("JTK: no status item on this platform; recording is not available"); });
    }
    return recordMenuItem_;
}

void JTKRecorderController::setStatusTitle(const std::string& title) {
    jtkOnMainThread([&] {
        if (auto item = recordMenuItem()) item->setTitle(title);
    });
}

void JTKRecorderController::configure(const std::filesystem::path& filePath) {
    if (auto item = recordMenuItem()) item->setAction([this] { toggleRecording(); });
    setStatusTitle(recordTitle);
    recordingFile_ = filePath;
}

void JTKRecorderController::toggleRecording() {
    if (JTKTestSuite::recorder())
        endRecording();
    else
        beginRecording();
}

void JTKRecorderController::endRecording() {
    if (auto recorder = JTKTestSuite::recorder()) recorder->stop();
    JTKTestSuite::setRecorder(nullptr);
    setStatusTitle(JTKTestSuite::recording() ? stopTitle : recordTitle);
}

void JTKRecorderController::beginRecording() {
    if (!recordingFile_) return;
    std::string message;
    if (jtkInsertRecordingMethod(*recordingFile_, message) != JTKRecordingMethodResult::inserted) {
        if (!message.empty()) jtkPrintLine(message);
        return;
    }
    // A queue of its own for each recording; the job holds it, so it ends with the job.
    auto queue = platform::makeSerialQueue("GUIRecordQueue");
    queue->async([queue, path = recordingFile_->string()] { JTKTestSuite::rec(path); });
}

void JTKTestSuite::rec(const std::string& filePath) {
    if (auto previous = recorder()) {
        previous->stop();
        setRecorder(nullptr);
    }
    std::this_thread::sleep_for(recordingPoll);
    auto recorder = JTKRecorder::make(filePath);
    if (!recorder) {
        JTKRecorderController::shared().setStatusTitle(JTKRecorderController::recordTitle);
        return;
    }
    setRecorder(recorder);
    JTKRecorderController::shared().setStatusTitle(recording() ? JTKRecorderController::stopTitle
                                                              : JTKRecorderController::recordTitle);
    while (recording()) std::this_thread::sleep_for(recordingPoll);
}

}  // namespace jtk
