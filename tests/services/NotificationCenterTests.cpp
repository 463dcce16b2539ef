// The notification center: delivery on the posting thread, the main queue or
// a serial queue, and changes to the observers during delivery.
#include "JTK/services/NotificationCenter.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;
using platform::DeliveryQueue;
using platform::Notification;

namespace {

using NotificationCenterTest = DesktopTest;

TEST_F(NotificationCenterTest, eachObserverRunsOnItsQueueThePostingThreadInsidePostInOrder) {
    services::NotificationCenter center;
    std::vector<std::string> inside;
    std::atomic<int> onMainCalls{0}, onQueueCalls{0};
    auto queue = platform::makeSerialQueue("observer");
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification& n) {
        auto key = n.userInfo.find("key");
        inside.push_back(*n.object.text() + " " + (key ? key->debugText() : "-"));
    });
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) { inside.push_back("second"); });
    center.addObserver("Ping", {}, DeliveryQueue::mainQueue, [&](const Notification&) { onMainCalls += platform::isMainThread(); });
    center.addObserver("Ping", {}, queue, [&, raw = queue.get()](const Notification&) { onQueueCalls += raw->isCurrent(); });
    onQueue([&] {
        center.post("Ping", "payload", platform::ValueDictionary{{"key", 7}});
        EXPECT_EQ(inside, (std::vector<std::string>{"payload 7", "second"})) << "both ran before post returned";
        platform::dispatchSyncMain([] {});  // the main queue runs in order
        EXPECT_EQ(onMainCalls.load(), 1);
    });
    center.post("Ping", "again");
    EXPECT_EQ(onMainCalls.load(), 1) << "from the main thread too, main-queue delivery waits for the loop";
    pumpMainLoop(0.05);
    EXPECT_EQ(onMainCalls.load(), 2);
    queue->sync([] {});
    EXPECT_EQ(onQueueCalls.load(), 2);
    queue.reset();  // the center does not keep the queue alive
    center.post("Ping", "gone");
    EXPECT_EQ(onQueueCalls.load(), 2);
}

TEST_F(NotificationCenterTest, handlersMayRemoveObserversAndPostAgainDuringDelivery) {
    services::NotificationCenter center;
    std::vector<std::string> seen;
    uint64_t self = 0, later = 0;
    auto add = [&](const char* name, std::function<void()> work) {
        return center.addObserver(name, {}, DeliveryQueue::postingThread, [work](const Notification&) { work(); });
    };
    add("Ping", [&] {
        seen.push_back("first");
        center.removeObserver(later);  // removed before its turn in this very post
    });
    self = add("Ping", [&] {
        seen.push_back("self");
        center.removeObserver(self);
    });
    later = add("Ping", [&] { seen.push_back("later"); });
    add("Ping", [&] {
        seen.push_back("repost");
        center.post("Pong");
    });
    add("Pong", [&] { seen.push_back("pong"); });
    center.post("Ping");
    center.post("Ping");
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "self", "repost", "pong", "first", "repost", "pong"}));
}

}  // namespace
