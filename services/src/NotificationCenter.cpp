#include "JTK/services/NotificationCenter.h"

#include <algorithm>
#include <atomic>

#include "JTK/services/BackendHooks.h"
#include "JTK/platform/Object.h"

namespace jtk::services {

struct NotificationCenter::Observer {
    enum class Target { postingThread, mainQueue, serialQueue };

    uint64_t token = 0;
    std::string name;                               // empty: every name
    platform::Value sender;                         // a non-object sender, or none for any
    std::weak_ptr<platform::Object> senderObject;   // an object sender, by identity
    bool senderIsObject = false;
    Target target = Target::postingThread;
    std::weak_ptr<platform::SerialQueue> queue;
    std::function<void(const platform::Notification&)> handler;
    std::atomic<bool> active{true};

    Observer(const std::string& name, const platform::Value& sender,
             std::function<void(const platform::Notification&)> handler)
        : name(name), handler(std::move(handler)) {
        if (auto object = sender.object()) {
            senderObject = object;
            senderIsObject = true;
        } else {
            this->sender = sender;
        }
    }

    // Called under the center's lock: compares owners instead of locking the
    // weak sender, so that no object can be destroyed (and run user code) here.
    bool matches(const platform::Notification& notification) const {
        if (!name.empty() && name != notification.name) return false;
        if (senderIsObject) {
            auto object = notification.object.object();
            return object && !senderObject.owner_before(object) && !object.owner_before(senderObject);
        }
        return sender.isNone() || sender == notification.object;
    }

    void callIfActive(const platform::Notification& notification) const {
        if (active.load()) handler(notification);
    }
};

void NotificationCenter::post(const std::string& name, const platform::Value& object, const platform::Value& userInfo) {
    platform::Notification notification{name, object, userInfo};
    // Handlers run without the lock: they may add or remove observers or post again.
    std::vector<std::shared_ptr<Observer>> matching;
    {
        std::lock_guard lock(mutex_);
        for (const auto& observer : observers_)
            if (observer->matches(notification)) matching.push_back(observer);
    }
    for (const auto& observer : matching) deliver(observer, notification);
}

void NotificationCenter::deliver(const std::shared_ptr<Observer>& observer, const platform::Notification& notification) {
    switch (observer->target) {
    case Observer::Target::postingThread:
        observer->callIfActive(notification);
        break;
    case Observer::Target::mainQueue:
        dispatchAsyncMain([observer, notification] { observer->callIfActive(notification); });
        break;
    case Observer::Target::serialQueue:
        // The queued work holds the observer, never the queue, so that the
        // queue is not kept alive (or destroyed) by its own work.
        if (auto queue = observer->queue.lock())
            queue->async([observer, notification] { observer->callIfActive(notification); });
        break;
    }
}

uint64_t NotificationCenter::addObserver(const std::string& name, const platform::Value& sender,
                                         platform::DeliveryQueue queue,
                                         std::function<void(const platform::Notification&)> handler) {
    auto observer = std::make_shared<Observer>(name, sender, std::move(handler));
    observer->target = queue == platform::DeliveryQueue::mainQueue ? Observer::Target::mainQueue
                                                                  : Observer::Target::postingThread;
    return add(std::move(observer));
}

uint64_t NotificationCenter::addObserver(const std::string& name, const platform::Value& sender,
                                         std::shared_ptr<platform::SerialQueue> queue,
                                         std::function<void(const platform::Notification&)> handler) {
    auto observer = std::make_shared<Observer>(name, sender, std::move(handler));
    observer->target = Observer::Target::serialQueue;
    observer->queue = queue;
    return add(std::move(observer));
}

uint64_t NotificationCenter::add(std::shared_ptr<Observer> observer) {
    std::lock_guard lock(mutex_);
    observer->token = nextToken_++;
    observers_.push_back(std::move(observer));
    return observers_.back()->token;
}

void NotificationCenter::removeObserver(uint64_t token) {
    std::shared_ptr<Observer> removed;  // released after the lock: its handler may own anything
    {
        std::lock_guard lock(mutex_);
        auto found = std::find_if(observers_.begin(), observers_.end(),
                                  [token](const auto& observer) { return observer->token == token; });
        if (found == observers_.end()) return;
        removed = std::move(*found);
        observers_.erase(found);
        removed->active = false;
    }
}

}  // namespace jtk::services

namespace jtk::platform {

NotificationCenter& defaultNotificationCenter() {
    // Never destroyed: queues and the main loop may still post while the process ends.
    static auto* center = new services::NotificationCenter;
    return *center;
}

}  // namespace jtk::platform
