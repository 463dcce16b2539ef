// Timers on the GUI thread's loop. A default-mode timer (commonModes false)
// does not fire while a modal dialog's loop runs or a popup (a menu) is open:
// it waits until they end, as a timer outside the common modes would.
#include <QApplication>
#include <QTimer>
#include <atomic>
#include <chrono>

#include "JTK/platform/RunLoop.h"
#include "QtMainQueue.h"

namespace jtk::qt {

namespace {

constexpr int deferredCheckMilliseconds = 20;

bool inModalOrTrackingLoop() { return QApplication::activeModalWidget() || QApplication::activePopupWidget(); }

class QtTimer : public platform::Timer, public std::enable_shared_from_this<QtTimer> {
public:
    QtTimer(double interval, bool repeats, std::function<void(platform::Timer&)> fire, bool commonModes)
        : intervalMs_(std::max(0, static_cast<int>(interval * 1000 + 0.5))),
          repeats_(repeats),
          commonModes_(commonModes),
          fire_(std::move(fire)) {}

    ~QtTimer() override {
        if (!timer_) return;
        if (onGuiThread())
            delete timer_;
        else
            timer_->deleteLater();  // a QTimer goes on its own thread
    }

    // GUI thread.
    void start() {
        timer_ = new QTimer;
        timer_->setTimerType(Qt::PreciseTimer);
        timer_->setSingleShot(true);
        std::weak_ptr<QtTimer> weak = shared_from_this();
        QObject::connect(timer_, &QTimer::timeout, [weak] {
            if (auto self = weak.lock()) self->timeout();
        });
        if (valid_) timer_->start(intervalMs_);
    }

    void invalidate() override {
        valid_ = false;
        std::weak_ptr<QtTimer> weak = weak_from_this();
        auto stop = [weak] {
            if (auto self = weak.lock(); self && self->timer_) self->timer_->stop();
        };
        if (onGuiThread())
            stop();
        else
            enqueueOnMain(stop);
    }
    bool isValid() const override { return valid_; }

private:
    void timeout() {
        if (!valid_) return;
        if (!commonModes_ && inModalOrTrackingLoop()) {
            timer_->start(deferredCheckMilliseconds);
            return;
        }
        if (!repeats_) valid_ = false;
        auto keepAlive = shared_from_this();  // the handler may drop the last other reference
        fire_(*this);
        if (repeats_ && valid_) timer_->start(std::max(intervalMs_, 1));
    }

    int intervalMs_;
    bool repeats_;
    bool commonModes_;
    std::function<void(platform::Timer&)> fire_;
    std::atomic<bool> valid_{true};
    QTimer* timer_ = nullptr;  // GUI thread
};

// The timers that are scheduled, kept alive until they stop.
std::vector<std::shared_ptr<QtTimer>>& liveTimers() {
    static auto* timers = new std::vector<std::shared_ptr<QtTimer>>;
    return *timers;
}

}  // namespace

}  // namespace jtk::qt

namespace jtk::platform {

std::shared_ptr<Timer> scheduleTimer(double interval, bool repeats, std::function<void(Timer&)> fire,
                                     bool commonModes) {
    auto timer = std::make_shared<qt::QtTimer>(interval, repeats, std::move(fire), commonModes);
    auto start = [timer] {
        auto& live = qt::liveTimers();
        std::erase_if(live, [](const auto& t) { return !t->isValid(); });
        live.push_back(timer);
        timer->start();
    };
    if (qt::onGuiThread())
        start();
    else
        qt::enqueueOnMain(start);
    return timer;
}

}  // namespace jtk::platform
