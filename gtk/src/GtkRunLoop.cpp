// Timers on GTK's main context. GLib dispatches a timeout in nested loops
// too, which is what a common-mode timer does; a default-mode timer
// (commonModes false) waits while a modal loop runs (modalRunning()) and
// fires once it has ended.
#include <glib.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "GtkMainQueue.h"
#include "JTK/platform/RunLoop.h"

namespace jtk::gtk {

namespace {

constexpr unsigned deferredCheckMilliseconds = 20;

class GLibTimer : public platform::Timer, public std::enable_shared_from_this<GLibTimer> {
public:
    GLibTimer(double interval, bool repeats, std::function<void(platform::Timer&)> fire, bool commonModes)
        : intervalMs_(static_cast<unsigned>(std::max(0.0, interval * 1000 + 0.5))),
          repeats_(repeats),
          commonModes_(commonModes),
          fire_(std::move(fire)) {}

    // Main thread.
    void start() { arm(intervalMs_); }

    void invalidate() override {
        valid_ = false;
        std::weak_ptr<GLibTimer> weak = weak_from_this();
        auto stop = [weak] {
            if (auto self = weak.lock()) self->disarm();
        };
        if (onMainThread())
            stop();
        else
            enqueueOnMain(stop);
    }
    bool isValid() const override { return valid_; }

    // Main thread: the timer's source goes when the timer is no longer held.
    void disarm() {
        if (sourceId_) g_source_remove(sourceId_);
        sourceId_ = 0;
    }

private:
    void arm(unsigned milliseconds) {
        disarm();
        if (!valid_) return;
        auto* weak = new std::weak_ptr<GLibTimer>(weak_from_this());
        sourceId_ = g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, &GLibTimer::timeout, weak,
                                       [](gpointer data) { delete static_cast<std::weak_ptr<GLibTimer>*>(data); });
    }

    static gboolean timeout(gpointer data) {
        auto self = static_cast<std::weak_ptr<GLibTimer>*>(data)->lock();
        if (!self) return G_SOURCE_REMOVE;
        self->sourceId_ = 0;  // this source ends here; arm() makes the next
        self->fired();
        return G_SOURCE_REMOVE;
    }

    void fired() {
        if (!valid_) return;
        if (!commonModes_ && modalRunning()) {
            arm(deferredCheckMilliseconds);
            return;
        }
        if (!repeats_) valid_ = false;
        fire_(*this);
        if (repeats_ && valid_) arm(std::max(intervalMs_, 1u));
    }

    unsigned intervalMs_;
    bool repeats_;
    bool commonModes_;
    std::function<void(platform::Timer&)> fire_;
    std::atomic<bool> valid_{true};
    guint sourceId_ = 0;  // main thread
};

// The timers that are scheduled, kept alive until they stop.
std::vector<std::shared_ptr<GLibTimer>>& liveTimers() {
    static auto* timers = new std::vector<std::shared_ptr<GLibTimer>>;
    return *timers;
}

}  // namespace

}  // namespace jtk::gtk

namespace jtk::platform {

std::shared_ptr<Timer> scheduleTimer(double interval, bool repeats, std::function<void(Timer&)> fire,
                                     bool commonModes) {
    auto timer = std::make_shared<gtk::GLibTimer>(interval, repeats, std::move(fire), commonModes);
    auto start = [timer] {
        auto& live = gtk::liveTimers();
        std::erase_if(live, [](const auto& t) { return !t->isValid(); });
        live.push_back(timer);
        timer->start();
    };
    if (gtk::onMainThread())
        start();
    else
        gtk::enqueueOnMain(start);
    return timer;
}

}  // namespace jtk::platform
