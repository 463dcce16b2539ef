// A labelled serial queue: one thread that runs immediate work in order and
// delayed work when it falls due. The destructor drains nothing: it stops the
// thread after the item in progress and joins it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "JTK/platform/Dispatch.h"

namespace jtk::services {

class SerialQueue : public platform::SerialQueue {
public:
    using Clock = std::chrono::steady_clock;

    explicit SerialQueue(std::string label);
    ~SerialQueue() override;

    const std::string& label() const override { return label_; }
    void async(std::function<void()> work) override;
    void sync(std::function<void()> work) override;
    void after(double seconds, std::function<void()> work) override;
    bool isCurrent() const override { return std::this_thread::get_id() == thread_.get_id(); }

private:
    void runWorker();

    std::string label_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> work_;
    std::multimap<Clock::time_point, std::function<void()>> delayed_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace jtk::services
