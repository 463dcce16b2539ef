// The notification center: delivery on the posting thread, the main queue or
// a serial queue, filters by name and sender, and changes during delivery.

#include "JTK/desktop/NotificationCenter.h"
#include "JTK/platform/Object.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

using platform::DeliveryQueue;
using platform::Notification;
using platform::Value;

namespace {

class Sender : public platform::Object {};
using ServicesNotifications = DesktopTest;

TEST_F(ServicesNotifications, eachObserverRunsOnItsQueueThePostingThreadInsidePostInOrder) {
    desktop::NotificationCenter center;
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

TEST_F(ServicesNotifications, observersFilterByNameAndSenderAndHoldAnObjectSenderWeakly) {
    desktop::NotificationCenter center;
    auto a = std::make_shared<Sender>();
    std::vector<std::string> seen;
    auto add = [&](const char* name, Value sender, std::string who) {
        center.addObserver(name, sender, DeliveryQueue::postingThread, [&seen, who](const Notification&) { seen.push_back(who); });
    };
    add("", {}, "all");
    add("Ping", {}, "ping");
    add("Ping", Value(a), "ping-a");
    add("Ping", Value("x"), "ping-x");
    add("", Value(3), "any-3");
    auto post = [&](const char* name, Value sender) {
        seen.clear();
        center.post(name, sender);
        return seen;
    };
    using Seen = std::vector<std::string>;
    EXPECT_EQ(post("Ping", Value(a)), (Seen{"all", "ping", "ping-a"}));
    EXPECT_EQ(post("Ping", Value(std::make_shared<Sender>())), (Seen{"all", "ping"})) << "another object";
    EXPECT_EQ(post("Ping", "x"), (Seen{"all", "ping", "ping-x"}));
    EXPECT_EQ(post("Pong", 3), (Seen{"all", "any-3"}));
    a.reset();
    EXPECT_EQ(post("Ping", Value(std::make_shared<Sender>())), (Seen{"all", "ping"})) << "a gone sender matches nothing";
}

TEST_F(ServicesNotifications, handlersMayRemoveObserversAndPostAgainDuringDelivery) {
    desktop::NotificationCenter center;
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
