// The notification center: delivery on the posting thread, the main queue or
// a serial queue, filters by name and sender, and changes during delivery.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "JTK/desktop/NotificationCenter.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Object.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

using platform::DeliveryQueue;
using platform::Notification;
using platform::Value;

namespace {

class Sender : public platform::Object {};

}  // namespace

TEST(ServicesNotifications, PostingThreadObserversRunInsidePostOnThePostersThreadInOrder) {
    desktop::NotificationCenter center;
    std::vector<int> order;
    std::thread::id handlerThread, posterThread;
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification& n) {
        handlerThread = std::this_thread::get_id();
        order.push_back(1);
        EXPECT_EQ(n.name, "Ping");
        EXPECT_EQ(n.object, Value("payload"));
        ASSERT_TRUE(n.userInfo.find("key"));
        EXPECT_EQ(*n.userInfo.find("key"), Value(7));
    });
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) { order.push_back(2); });
    auto queue = platform::makeSerialQueue("poster");
    queue->sync([&] {
        posterThread = std::this_thread::get_id();
        center.post("Ping", "payload", platform::ValueDictionary{{"key", 7}});
        // Synchronous: both observers have run before post returned.
        EXPECT_EQ(order, (std::vector<int>{1, 2}));
    });
    EXPECT_EQ(handlerThread, posterThread);
}

TEST(ServicesNotifications, MainQueueObserversRunLaterOnTheMainThread) {
    desktop::NotificationCenter center;
    std::atomic<int> calls{0};
    std::atomic<bool> allOnMain{true};
    center.addObserver("Ping", {}, DeliveryQueue::mainQueue, [&](const Notification&) {
        if (!platform::isMainThread()) allOnMain = false;
        ++calls;
    });

    // From another thread: the main queue runs in order, so the handler has run
    // by the time a later synchronous hop to the main thread comes back.
    testsupport::runOnTestQueue([&] {
        center.post("Ping");
        platform::dispatchSyncMain([] {});
        EXPECT_EQ(calls.load(), 1);
    });

    // From the main thread itself: queued, not called inside post.
    center.post("Ping");
    EXPECT_EQ(calls.load(), 1);
    testsupport::pumpMainLoop(0.05);
    EXPECT_EQ(calls.load(), 2);
    EXPECT_TRUE(allOnMain.load());
}

TEST(ServicesNotifications, SerialQueueObserversRunOnThatQueueAndAreDroppedOnceItIsGone) {
    desktop::NotificationCenter center;
    auto queue = platform::makeSerialQueue("observer");
    std::atomic<int> calls{0};
    std::atomic<bool> onQueue{true};
    platform::SerialQueue* raw = queue.get();
    center.addObserver("Ping", {}, queue, [&](const Notification&) {
        if (!raw->isCurrent()) onQueue = false;
        ++calls;
    });
    center.post("Ping");
    center.post("Ping");
    queue->sync([] {});
    EXPECT_EQ(calls.load(), 2);
    EXPECT_TRUE(onQueue.load());

    raw = nullptr;
    queue.reset();  // the center does not keep it alive
    center.post("Ping");
    EXPECT_EQ(calls.load(), 2);
}

TEST(ServicesNotifications, ObserversFilterByNameAndSenderAndHoldAnObjectSenderWeakly) {
    desktop::NotificationCenter center;
    auto a = std::make_shared<Sender>();
    auto b = std::make_shared<Sender>();
    std::vector<std::string> seen;
    auto record = [&](const std::string& who) { return [&seen, who](const Notification&) { seen.push_back(who); }; };
    center.addObserver("", {}, DeliveryQueue::postingThread, record("all"));
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, record("ping-any"));
    center.addObserver("Ping", Value(a), DeliveryQueue::postingThread, record("ping-a"));
    center.addObserver("Ping", Value("x"), DeliveryQueue::postingThread, record("ping-x"));
    center.addObserver("", Value(3), DeliveryQueue::postingThread, record("any-3"));

    center.post("Ping", Value(a));
    EXPECT_EQ(seen, (std::vector<std::string>{"all", "ping-any", "ping-a"}));
    seen.clear();
    center.post("Ping", Value(b));  // an equal-looking object is still another sender
    EXPECT_EQ(seen, (std::vector<std::string>{"all", "ping-any"}));
    seen.clear();
    center.post("Ping", "x");
    EXPECT_EQ(seen, (std::vector<std::string>{"all", "ping-any", "ping-x"}));
    seen.clear();
    center.post("Pong", 3);
    EXPECT_EQ(seen, (std::vector<std::string>{"all", "any-3"}));
    seen.clear();
    a.reset();  // held weakly: a gone sender matches nothing
    center.post("Ping", Value(std::make_shared<Sender>()));
    EXPECT_EQ(seen, (std::vector<std::string>{"all", "ping-any"}));
}

TEST(ServicesNotifications, HandlersMayRemoveObserversAndPostAgainDuringDelivery) {
    desktop::NotificationCenter center;
    std::vector<std::string> seen;
    uint64_t self = 0, later = 0;
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) {
        seen.push_back("first");
        center.removeObserver(later);  // removed before its turn in this very post
    });
    self = center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) {
        seen.push_back("self");
        center.removeObserver(self);
    });
    later = center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) { seen.push_back("later"); });
    center.addObserver("Ping", {}, DeliveryQueue::postingThread, [&](const Notification&) {
        seen.push_back("repost");
        if (seen.size() < 8) center.post("Pong");
    });
    center.addObserver("Pong", {}, DeliveryQueue::postingThread, [&](const Notification&) { seen.push_back("pong"); });

    center.post("Ping");
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "self", "repost", "pong"}));
    seen.clear();
    center.post("Ping");
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "repost", "pong"}));

}

TEST(ServicesNotifications, AnObserverRemovedBeforeAQueuedDeliveryIsNotCalled) {
    desktop::NotificationCenter center;
    std::atomic<int> mainCalls{0}, queueCalls{0};
    uint64_t onMain = center.addObserver("Ping", {}, DeliveryQueue::mainQueue, [&](const Notification&) { ++mainCalls; });
    auto queue = platform::makeSerialQueue("observer");
    std::atomic<bool> release{false};
    queue->async([&] {
        while (!release) std::this_thread::yield();
    });
    uint64_t onQueue = center.addObserver("Ping", {}, queue, [&](const Notification&) { ++queueCalls; });

    center.post("Ping");  // on the main thread: the main-queue delivery waits for the loop
    center.removeObserver(onMain);
    center.removeObserver(onQueue);  // the queue is still busy with earlier work
    release = true;
    queue->sync([] {});
    testsupport::pumpMainLoop(0.05);
    EXPECT_EQ(mainCalls.load(), 0);
    EXPECT_EQ(queueCalls.load(), 0);
}

TEST(ServicesNotifications, PostingFromManyThreadsWhileOthersAddAndRemoveObservers) {
    desktop::NotificationCenter center;
    std::atomic<int> steady{0}, transient{0};
    center.addObserver("Tick", {}, DeliveryQueue::postingThread, [&](const Notification&) { ++steady; });
    constexpr int posters = 3, postsEach = 400;
    std::atomic<bool> stop{false};
    std::thread churn([&] {
        while (!stop) {
            uint64_t token = center.addObserver("Tick", {}, DeliveryQueue::postingThread, [&](const Notification&) {
                ++transient;
            });
            center.removeObserver(token);
        }
    });
    std::vector<std::thread> threads;
    for (int t = 0; t < posters; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < postsEach; ++i) center.post("Tick", i);
        });
    for (auto& thread : threads) thread.join();
    stop = true;
    churn.join();
    EXPECT_EQ(steady.load(), posters * postsEach);
}
