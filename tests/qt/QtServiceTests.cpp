// The backend's services: the main queue inside modal loops,
// default-mode timers, the data folder and the user defaults.
#include <QMessageBox>
#include <QStandardPaths>
#include <QTimer>
#include <chrono>

#include "JTK/platform/Application.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/RunLoop.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/platform/Window.h"
#include "QtFixture.h"
#include "QtWrappers.h"

using namespace jtk;
using qttest::QtTest;

namespace {

TEST_F(QtTest, theMainQueueRunsInsideAModalDialog) {
    QMessageBox box(QMessageBox::Information, "Modal", "Wait");
    std::atomic<bool> ran{false};
    auto queue = platform::makeSerialQueue("ModalTest");
    queue->async([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        platform::dispatchSyncMain([&] {
            ran = true;
            box.done(0);
        });
    });
    QTimer::singleShot(5000, &box, [&] { box.done(1); });  // a broken queue fails instead of hanging
    box.exec();
    queue.reset();
    EXPECT_TRUE(ran);
}

TEST_F(QtTest, aDefaultModeTimerWaitsForTheModalLoopToEnd) {
    int fired = 0;
    bool firedDuringModal = true;
    auto timer = platform::scheduleTimer(0.01, false, [&](platform::Timer&) { ++fired; }, false);
    QMessageBox box(QMessageBox::Information, "Modal", "Wait");
    QTimer::singleShot(150, &box, [&] {
        firedDuringModal = fired > 0;
        box.done(0);
    });
    box.exec();
    EXPECT_FALSE(firedDuringModal);
    EXPECT_TRUE(qttest::waitFor([&] { return fired == 1; }));
    EXPECT_FALSE(timer->isValid());
}

TEST_F(QtTest, theDataFolderHoldsQtsApplicationDataLocation) {
    auto support = platform::applicationSupportDirectory();
    ASSERT_TRUE(support);
    auto name = platform::sharedApplication()->name();
    EXPECT_EQ((*support / name).string(),
              QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).toStdString());
}

struct DefaultsCase {
    const char* label;
    platform::Value value;
};

class UserDefaults : public QtTest, public ::testing::WithParamInterface<DefaultsCase> {
protected:
    void TearDown() override {
        platform::standardUserDefaults().removeObject(key());
        platform::standardUserDefaults().synchronize();
        QtTest::TearDown();
    }
    static std::string key() { return std::string("test.") + GetParam().label; }
};

TEST_P(UserDefaults, keepTheValueAndItsKindThroughTheSettingsFile) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(GetParam().value, key());
    EXPECT_EQ(defaults.objectForKey(key()), GetParam().value);
    ASSERT_TRUE(defaults.synchronize());
    platform::resetStandardUserDefaults();
    EXPECT_EQ(defaults.objectForKey(key()), GetParam().value) << "read back from the file";
    defaults.removeObject(key());
    EXPECT_TRUE(defaults.objectForKey(key()).isNone());
}

using platform::Value;
INSTANTIATE_TEST_SUITE_P(
    Qt, UserDefaults,
    ::testing::Values(
        DefaultsCase{"boolean", Value(true)}, DefaultsCase{"integer", Value(int64_t{-42})},
        DefaultsCase{"real", Value(0.25)}, DefaultsCase{"text", Value("Grüße, world")},
        DefaultsCase{"list", Value(platform::ValueList{Value(1), Value("two")})},
        DefaultsCase{"dictionary",
                     Value(platform::ValueDictionary{{Value("count"), Value(3)}, {Value("flag"), Value(false)}})},
        DefaultsCase{"date", Value(platform::Date{std::chrono::system_clock::time_point(
                                 std::chrono::milliseconds(1700000000123))})},
        DefaultsCase{"data", Value(platform::Data{{0, 1, 254, 255}})}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
