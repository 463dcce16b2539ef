#include "JTK/desktop/RunLoop.h"

#include <algorithm>
#include <atomic>

#include "JTK/platform/Dispatch.h"
#include "ServicesStart.h"

namespace jtk::desktop {

struct RunLoop::TimerImpl : platform::Timer {
    Clock::time_point fireTime;
    Clock::duration interval;
    bool repeats = false;
    bool commonModes = true;
    std::function<void(platform::Timer&)> fire;
    std::atomic<bool> valid{true};

    void invalidate() override {
        valid = false;
        RunLoop::main().wake_.notify_all();
    }
    bool isValid() const override { return valid; }
    bool runsIn(RunLoopMode mode) const { return commonModes || mode == RunLoopMode::defaultMode; }
};

RunLoop& RunLoop::main() {
    static RunLoop loop;
    // The desktop starts with its main loop: the shared services get its
    // main queue then, before anything can be queued on it.
    static const bool started = (startServices(loop), true);
    (void)started;
    return loop;
}

RunLoop::RunLoop() : mainThread_(std::this_thread::get_id()) {}

void RunLoop::adoptCurrentThreadAsMain() {
    std::lock_guard lock(mutex_);
    mainThread_ = std::this_thread::get_id();
}

bool RunLoop::isMainThread() const {
    std::lock_guard lock(mutex_);
    return std::this_thread::get_id() == mainThread_;
}

void RunLoop::perform(std::function<void()> work) {
    {
        std::lock_guard lock(mutex_);
        tasks_.emplace_back(nextArrival_++, std::move(work));
    }
    wake_.notify_all();
}

std::shared_ptr<platform::Timer> RunLoop::addTimer(double interval, bool repeats,
                                                   std::function<void(platform::Timer&)> fire, bool commonModes) {
    auto timer = std::make_shared<TimerImpl>();
    timer->interval = toDuration(std::max(interval, 0.0));
    timer->fireTime = Clock::now() + timer->interval;
    timer->repeats = repeats;
    timer->commonModes = commonModes;
    timer->fire = std::move(fire);
    {
        std::lock_guard lock(mutex_);
        timers_.push_back(timer);
        ++timerGeneration_;
    }
    wake_.notify_all();
    return timer;
}

void RunLoop::setEventHandler(EventHandler handler) {
    std::lock_guard lock(mutex_);
    eventHandler_ = std::move(handler);
}

void RunLoop::enqueueEvent(std::shared_ptr<platform::Event> event) {
    {
        std::lock_guard lock(mutex_);
        events_.emplace_back(nextArrival_++, std::move(event));
    }
    wake_.notify_all();
}

bool RunLoop::hasPendingEvents() const {
    std::lock_guard lock(mutex_);
    return !events_.empty();
}

bool RunLoop::runOldestTaskOrEvent() {
    std::function<void()> task;
    std::shared_ptr<platform::Event> event;
    EventHandler handler;
    {
        std::lock_guard lock(mutex_);
        bool taskFirst = !tasks_.empty() && (events_.empty() || tasks_.front().first < events_.front().first);
        if (taskFirst) {
            task = std::move(tasks_.front().second);
            tasks_.pop_front();
        } else if (!events_.empty()) {
            event = std::move(events_.front().second);
            events_.pop_front();
            handler = eventHandler_;
        } else {
            return false;
        }
    }
    workCount_.fetch_add(1, std::memory_order_relaxed);
    if (task)
        task();
    else if (handler)
        handler(std::move(event));
    return true;
}

bool RunLoop::fireOneTimer(RunLoopMode mode) {
    std::shared_ptr<TimerImpl> due;
    {
        std::lock_guard lock(mutex_);
        std::erase_if(timers_, [](const auto& t) { return !t->valid; });
        auto now = Clock::now();
        for (auto& timer : timers_) {
            if (timer->runsIn(mode) && timer->fireTime <= now && (!due || timer->fireTime < due->fireTime)) due = timer;
        }
        if (!due) return false;
        if (due->repeats) {
            // Skip missed ticks rather than firing them in a burst.
            while (due->fireTime <= now) due->fireTime += std::max(due->interval, Clock::duration(1));
        } else {
            due->valid = false;
        }
    }
    workCount_.fetch_add(1, std::memory_order_relaxed);
    due->fire(*due);
    return true;
}

void RunLoop::waitForWork(RunLoopMode mode, std::optional<Clock::time_point> deadline) {
    std::unique_lock lock(mutex_);
    auto wakeAt = deadline;
    for (auto& timer : timers_)
        if (timer->valid && timer->runsIn(mode) && (!wakeAt || timer->fireTime < *wakeAt)) wakeAt = timer->fireTime;
    const uint64_t generation = timerGeneration_;
    auto hasWork = [&] {
        if (!tasks_.empty() || !events_.empty() || timerGeneration_ != generation) return true;
        return std::any_of(timers_.begin(), timers_.end(), [](const auto& t) { return !t->valid; });
    };
    if (hasWork()) return;
    if (wakeAt)
        wake_.wait_until(lock, *wakeAt, hasWork);
    else
        wake_.wait(lock, hasWork);
}

void RunLoop::runMode(RunLoopMode mode, std::optional<Clock::time_point> deadline, const std::function<bool()>& until) {
    Level level{mode};
    levels_.push_back(&level);
    while (!level.stopped && !(until && until())) {
        if (deadline && Clock::now() >= *deadline) break;
        bool worked = runOldestTaskOrEvent();
        worked = fireOneTimer(mode) || worked;
        if (!worked && !level.stopped && !(until && until())) waitForWork(mode, deadline);
    }
    levels_.pop_back();
}

void RunLoop::stop() {
    if (!levels_.empty()) levels_.back()->stopped = true;
    wake_.notify_all();
}

std::optional<RunLoopMode> RunLoop::currentMode() const {
    if (levels_.empty()) return std::nullopt;
    return levels_.back()->mode;
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::shared_ptr<Timer> scheduleTimer(double interval, bool repeats, std::function<void(Timer&)> fire,
                                     bool commonModes) {
    return desktop::RunLoop::main().addTimer(interval, repeats, std::move(fire), commonModes);
}

}  // namespace jtk::platform
