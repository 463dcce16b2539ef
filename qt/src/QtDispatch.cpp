// The main queue and the platform's main-queue operations over it.
#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include "JTK/platform/Dispatch.h"
#include "JTK/platform/RunLoop.h"
#include "QtMainQueue.h"

namespace jtk::qt {

namespace {

const std::thread::id loadingThread = std::this_thread::get_id();

// Receives the wake-up events on the GUI thread and drains the queue.
class QueueDrainer : public QObject {
public:
    static QEvent::Type wakeType() {
        static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
        return type;
    }
    bool event(QEvent* event) override {
        if (event->type() != wakeType()) return QObject::event(event);
        drainMainQueue();
        return true;
    }
};

// The drainer and the wake-up events are made on the GUI thread: an object
// made on another thread and read here (an event's type, a receiver's class)
// would be data handed over through Qt's queue, out of the sanitizer's sight.
struct MainQueue {
    std::mutex mutex;
    std::deque<std::function<void()>> work;
    bool wakePending = false;
    QueueDrainer* drainer = nullptr;
    QEvent* spareWake = nullptr;  // the next wake-up event, ready for any thread to post
};

MainQueue& mainQueue() {
    static auto* queue = new MainQueue;  // never destroyed: other threads may queue work while the process ends
    return *queue;
}

}  // namespace

bool onGuiThread() {
    if (QCoreApplication* app = QCoreApplication::instance()) return QThread::currentThread() == app->thread();
    return std::this_thread::get_id() == loadingThread;
}

void startMainQueue() {
    auto& queue = mainQueue();
    bool pending = false;
    {
        std::lock_guard lock(queue.mutex);
        if (!queue.drainer) queue.drainer = new QueueDrainer;
        if (!queue.spareWake) queue.spareWake = new QEvent(QueueDrainer::wakeType());
        pending = !queue.work.empty();
    }
    // Work queued before the queue started had nobody to wake.
    if (pending) enqueueOnMain([] {});
}

void enqueueOnMain(std::function<void()> work) {
    auto& queue = mainQueue();
    if (onGuiThread() && QCoreApplication::instance() && !queue.drainer) startMainQueue();
    QueueDrainer* drainer = nullptr;
    QEvent* wake = nullptr;
    {
        std::lock_guard lock(queue.mutex);
        queue.work.push_back(std::move(work));
        if (!queue.wakePending && queue.drainer && queue.spareWake) {
            queue.wakePending = true;
            drainer = queue.drainer;
            wake = std::exchange(queue.spareWake, nullptr);
        }
    }
    if (wake) QCoreApplication::postEvent(drainer, wake);
}

int drainMainQueue() {
    auto& queue = mainQueue();
    {
        // Work queued from now on needs a new wake-up.
        std::lock_guard lock(queue.mutex);
        if (!queue.spareWake) queue.spareWake = new QEvent(QueueDrainer::wakeType());
        queue.wakePending = false;
    }
    int ran = 0;
    for (;;) {
        std::function<void()> work;
        QueueDrainer* drainer = nullptr;
        QEvent* wake = nullptr;
        {
            std::lock_guard lock(queue.mutex);
            if (queue.work.empty()) return ran;
            work = std::move(queue.work.front());
            queue.work.pop_front();
            // Work may run a nested loop (a modal dialog): work queued behind
            // it needs a wake-up of its own, or it waits for the loop to end.
            if (!queue.work.empty() && !queue.wakePending && queue.spareWake) {
                queue.wakePending = true;
                drainer = queue.drainer;
                wake = std::exchange(queue.spareWake, nullptr);
            }
        }
        if (wake) QCoreApplication::postEvent(drainer, wake);
        work();
        ++ran;
    }
}

}  // namespace jtk::qt

namespace jtk::platform {

bool isMainThread() { return qt::onGuiThread(); }

void dispatchSyncMain(std::function<void()> work) {
    if (qt::onGuiThread()) {
        work();
        return;
    }
    std::promise<void> done;
    qt::enqueueOnMain([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void dispatchAsyncMain(std::function<void()> work) { qt::enqueueOnMain(std::move(work)); }

void dispatchAfterMain(double seconds, std::function<void()> work) {
    qt::enqueueOnMain([seconds, work = std::move(work)]() mutable {
        scheduleTimer(seconds, false, [work = std::move(work)](Timer&) { work(); }, true);
    });
}

}  // namespace jtk::platform
