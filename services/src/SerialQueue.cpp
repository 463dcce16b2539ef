#include "JTK/services/SerialQueue.h"

#include <future>

namespace jtk::services {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)) {
    thread_ = std::thread([this] { runWorker(); });
}

SerialQueue::~SerialQueue() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (isCurrent())
        thread_.detach();  // the last reference went away on the queue itself
    else
        thread_.join();
}

void SerialQueue::async(std::function<void()> work) {
    {
        std::lock_guard lock(mutex_);
        work_.push_back(std::move(work));
    }
    wake_.notify_all();
}

void SerialQueue::sync(std::function<void()> work) {
    if (isCurrent()) {
        work();
        return;
    }
    std::promise<void> done;
    async([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void SerialQueue::after(double seconds, std::function<void()> work) {
    {
        std::lock_guard lock(mutex_);
        delayed_.emplace(Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds)), std::move(work));
    }
    wake_.notify_all();
}

void SerialQueue::runWorker() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        auto now = Clock::now();
        if (!delayed_.empty() && delayed_.begin()->first <= now) {
            work_.push_back(std::move(delayed_.begin()->second));
            delayed_.erase(delayed_.begin());
        }
        if (!work_.empty()) {
            auto work = std::move(work_.front());
            work_.pop_front();
            lock.unlock();
            work();
            lock.lock();
            continue;
        }
        if (delayed_.empty())
            wake_.wait(lock);
        else
            wake_.wait_until(lock, delayed_.begin()->first);
    }
}

}  // namespace jtk::services

namespace jtk::platform {

std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label) {
    return std::make_shared<services::SerialQueue>(label);
}

}  // namespace jtk::platform
