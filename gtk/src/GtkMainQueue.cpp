// The main queue, the platform's main-queue operations over it, and the
// modal count. Work waits in a queue of its own under a std::mutex; GLib
// only wakes the main thread (an idle source without data), so the handover
// is visible to the thread sanitizer, which cannot see inside GLib. The wake
// source runs in every loop of GTK's default main context, nested ones (an
// alert's) included.
#include <glib.h>

#include <atomic>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include "GtkMainQueue.h"
#include "GtkMainThread.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/RunLoop.h"

namespace jtk::gtk {

namespace {

std::atomic<std::thread::id>& mainThreadId() {
    // The thread that loaded the backend, until installBackend names GTK's.
    static std::atomic<std::thread::id> id{std::this_thread::get_id()};
    return id;
}
[[maybe_unused]] const bool loadingThreadNoted = (mainThreadId(), true);

struct MainQueue {
    std::mutex mutex;
    std::deque<std::function<void()>> work;
    bool wakePending = false;
};

MainQueue& mainQueue() {
    static auto* queue = new MainQueue;  // never destroyed: other threads may queue work while the process ends
    return *queue;
}

gboolean drainFromGLib(gpointer) {
    drainMainQueue();
    return G_SOURCE_REMOVE;
}

// A new idle source each time: GLib does not dispatch a source again while
// it is dispatching, so work running a nested loop would hold back the rest.
void wake() { g_idle_add_full(G_PRIORITY_DEFAULT, drainFromGLib, nullptr, nullptr); }

int modalDepth = 0;  // main thread

// Main thread: work items running (nested loops run items inside items) and
// the step counter, advanced as each item starts and ends.
int workDepth = 0;
uint64_t stepCounter = 0;

}  // namespace

void setMainThread() { mainThreadId() = std::this_thread::get_id(); }

bool onMainThread() { return std::this_thread::get_id() == mainThreadId().load(); }

void enqueueOnMain(std::function<void()> work) {
    auto& queue = mainQueue();
    bool needsWake = false;
    {
        std::lock_guard lock(queue.mutex);
        queue.work.push_back(std::move(work));
        needsWake = !std::exchange(queue.wakePending, true);
    }
    if (needsWake) wake();
}

int drainMainQueue() {
    auto& queue = mainQueue();
    {
        std::lock_guard lock(queue.mutex);
        queue.wakePending = false;  // work queued from now on needs a new wake-up
    }
    int ran = 0;
    for (;;) {
        std::function<void()> work;
        bool needsWake = false;
        {
            std::lock_guard lock(queue.mutex);
            if (queue.work.empty()) return ran;
            work = std::move(queue.work.front());
            queue.work.pop_front();
            // The work may run a nested loop: what waits behind it gets a
            // wake-up of its own there.
            if (!queue.work.empty() && !queue.wakePending) needsWake = queue.wakePending = true;
        }
        if (needsWake) wake();
        ++workDepth;
        ++stepCounter;
        work();
        --workDepth;
        ++stepCounter;
        ++ran;
    }
}

uint64_t mainQueueStep() { return workDepth > 0 ? stepCounter : 0; }

ModalScope::ModalScope() { ++modalDepth; }
ModalScope::~ModalScope() { --modalDepth; }
bool modalRunning() { return modalDepth > 0; }

}  // namespace jtk::gtk

namespace jtk::platform {

bool isMainThread() { return gtk::onMainThread(); }

void dispatchSyncMain(std::function<void()> work) {
    if (gtk::onMainThread()) {
        work();
        return;
    }
    std::promise<void> done;
    gtk::enqueueOnMain([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void dispatchAsyncMain(std::function<void()> work) { gtk::enqueueOnMain(std::move(work)); }

void dispatchAfterMain(double seconds, std::function<void()> work) {
    gtk::enqueueOnMain([seconds, work = std::move(work)]() mutable {
        scheduleTimer(seconds, false, [work = std::move(work)](Timer&) { work(); }, true);
    });
}

}  // namespace jtk::platform
