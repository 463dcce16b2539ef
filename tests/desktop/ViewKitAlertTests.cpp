// Modal alerts: a real key window in the application's list, answered by a
// main-queue task, by a common-mode timer while the alert is left alone, and
// by the Return key posted from a test queue.
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>

#include "JTK/desktop/Alert.h"
#include "JTK/desktop/KeyboardLayout.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/RunLoop.h"
#include "tests/desktop/ViewKitTestSupport.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

using desktop::Alert;
using platform::Rect;

namespace {

std::vector<std::string> labelTexts(const desktop::View& root) {
    std::vector<std::string> texts;
    for (const auto& view : root.desktopSubviews())
        if (auto label = std::dynamic_pointer_cast<desktop::Label>(view)) texts.push_back(label->stringValue());
    return texts;
}

}  // namespace

using ViewKitAlert = ViewKitTest;

TEST_F(ViewKitAlert, AMainQueueTaskFindsTheRunningAlertAndPressesAButton) {
    auto app = desktop::Application::shared();
    auto document = shownWindow({100, 100, 400, 300}, "Document");
    auto alert = platform::makeAlert();
    alert->setMessageText("All tests ran");
    alert->setInformativeText("Accept the new images?");
    alert->addButtonWithTitle("Quit");
    alert->addButtonWithTitle("Cancel");

    bool checked = false;
    platform::dispatchAsyncMain([&] {
        // A stop meant for another level does not end the alert.
        desktop::RunLoop::main().stop();
        platform::dispatchAfterMain(0.02, [&] {
            Alert* running = Alert::current();
            ASSERT_NE(running, nullptr);
            auto window = running->window();
            ASSERT_NE(window, nullptr);
            EXPECT_EQ(app->keyWindow(), window);
            EXPECT_EQ(app->windows().back(), window);
            EXPECT_EQ(app->orderedWindows().front(), window);
            EXPECT_EQ(labelTexts(*window->desktopContentView()),
                      (std::vector<std::string>{"All tests ran", "Accept the new images?"}));
            // Buttons sit at the bottom right, the first one rightmost.
            auto quit = running->buttons()[0]->convertRectToWindow(running->buttons()[0]->bounds());
            auto cancel = running->buttons()[1]->convertRectToWindow(running->buttons()[1]->bounds());
            EXPECT_EQ(quit.maxX(), window->contentRect().width() - 20);
            EXPECT_LT(cancel.maxX(), quit.minX());
            EXPECT_EQ(quit.minY(), cancel.minY());
            EXPECT_LT(quit.maxY(), window->contentRect().height() / 2);
            EXPECT_EQ(running->buttons()[1]->performSelector("title"), platform::Value("Cancel"));
            EXPECT_FALSE(running->pressButton(2));
            checked = true;
            running->pressButton(1);
        });
    });
    EXPECT_EQ(alert->runModal(), 1001);
    EXPECT_TRUE(checked);
    EXPECT_EQ(Alert::current(), nullptr);
    // The alert's window is closed; the document window is key again.
    ASSERT_EQ(app->windows().size(), 1u);
    EXPECT_EQ(app->keyWindow(), document);
}

TEST_F(ViewKitAlert, CommonModeTimersFireWhileTheAlertWaitsAndCanAnswerIt) {
    auto alert = platform::makeAlert();
    alert->setMessageText("Finished");
    int commonTicks = 0, defaultTicks = 0;
    auto press = platform::scheduleTimer(0.01, true, [&](platform::Timer& timer) {
        if (++commonTicks < 5) return;
        timer.invalidate();
        ASSERT_NE(Alert::current(), nullptr);
        Alert::current()->pressButton(0);
    });
    auto idle = platform::scheduleTimer(0.002, true, [&](platform::Timer&) { ++defaultTicks; }, false);

    EXPECT_EQ(alert->runModal(), 1000);  // the "OK" every alert gets when it has no buttons
    EXPECT_EQ(commonTicks, 5);
    EXPECT_EQ(defaultTicks, 0);
    auto& buttons = static_cast<Alert&>(*alert).buttons();
    ASSERT_EQ(buttons.size(), 1u);
    EXPECT_EQ(buttons[0]->title(), "OK");
    press->invalidate();
    idle->invalidate();
    EXPECT_TRUE(desktop::Application::shared()->windows().empty());
}

TEST_F(ViewKitAlert, RunFromATestQueueAndAnsweredByThePostedReturnKey) {
    auto alert = platform::makeAlert();
    alert->setMessageText("Continue?");
    alert->addButtonWithTitle("Continue");
    alert->addButtonWithTitle("Cancel");
    std::atomic<int> result{0};
    testsupport::runOnTestQueue([&] {
        auto person = platform::makeSerialQueue("Person");
        person->async([&] {
            bool running = false;
            while (!running) platform::dispatchSyncMain([&] { running = Alert::current() != nullptr; });
            auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
            for (bool down : {true, false})
                platform::postEventToPid(::getpid(), *platform::createKeyboardEvent(source, desktop::keyCodes::returnKey, down));
        });
        result = alert->runModal();  // hops to the main thread and waits there
        person->sync([] {});
    });
    EXPECT_EQ(result, 1000);
    EXPECT_EQ(Alert::current(), nullptr);
}
