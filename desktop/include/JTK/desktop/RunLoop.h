// The main thread's run loop: the main queue (serviced in every mode), timers
// with modes, and the application's event queue. Modes nest: a modal alert or
// a menu's tracking loop runs the loop again in its own mode, and main-queue
// work still reaches the main thread meanwhile.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "JTK/platform/Events.h"
#include "JTK/platform/RunLoop.h"

namespace jtk::desktop {

using Clock = std::chrono::steady_clock;
using platform::RunLoopMode;

class RunLoop {
public:
    using EventHandler = std::function<void(std::shared_ptr<platform::Event>)>;

    static RunLoop& main();

    // The thread that runs the loop; the thread that first asked for main(),
    // unless another adopts the role before the loop runs.
    void adoptCurrentThreadAsMain();
    bool isMainThread() const;

    // Main queue: work run on the main thread in whatever mode the loop runs.
    void perform(std::function<void()> work);
    std::shared_ptr<platform::Timer> addTimer(double interval, bool repeats, std::function<void(platform::Timer&)> fire,
                                              bool commonModes);

    // Events reach the handler on the main thread, in every mode, one at a time.
    void setEventHandler(EventHandler handler);
    void enqueueEvent(std::shared_ptr<platform::Event> event);

    // Runs the loop in a mode until stop() is called for this level, the
    // predicate (checked after every piece of work) holds, or the deadline passes.
    void runMode(RunLoopMode mode, std::optional<Clock::time_point> deadline = std::nullopt,
                 const std::function<bool()>& until = {});
    // Runs in the default mode until stop().
    void run() { runMode(RunLoopMode::defaultMode); }
    // Runs in the default mode for a while; for tests and start-up.
    void runFor(double seconds) { runMode(RunLoopMode::defaultMode, Clock::now() + toDuration(seconds)); }
    // Ends the innermost running level (main thread only).
    void stop();
    // Makes a waiting loop look at its predicate again (any thread).
    void wakeUp() { perform([] {}); }
    std::optional<RunLoopMode> currentMode() const;
    // How many pieces of work (tasks, timer fires, events) the loop has
    // started, in any mode: a loop whose count has not moved has changed
    // nothing on screen. Main thread.
    uint64_t workCount() const { return workCount_.load(std::memory_order_relaxed); }
    // Whether events wait in the application's queue (any thread).
    bool hasPendingEvents() const;

    static Clock::duration toDuration(double seconds) {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }

private:
    struct TimerImpl;
    RunLoop();
    // Runs the main-queue task or delivers the event that came first: work
    // queued after an event (a read of the state it changes) waits for it,
    // however long the main thread was busy before.
    bool runOldestTaskOrEvent();
    bool fireOneTimer(RunLoopMode mode);
    void waitForWork(RunLoopMode mode, std::optional<Clock::time_point> deadline);

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::thread::id mainThread_;
    // Tasks and events, each with its place in their common arrival order.
    std::deque<std::pair<uint64_t, std::function<void()>>> tasks_;
    std::deque<std::pair<uint64_t, std::shared_ptr<platform::Event>>> events_;
    uint64_t nextArrival_ = 0;
    std::vector<std::shared_ptr<TimerImpl>> timers_;
    // Bumped when a timer is added, so a loop already waiting recomputes its wake time.
    uint64_t timerGeneration_ = 0;
    EventHandler eventHandler_;
    // Main-thread only: one stop flag and mode per running level.
    struct Level {
        RunLoopMode mode;
        bool stopped = false;
    };
    std::vector<Level*> levels_;
    std::atomic<uint64_t> workCount_{0};
};

}  // namespace jtk::desktop
