// The desktop's notification center. Observers match by name and sender and
// are called on the posting thread (inside post), through the main run loop,
// or on a serial queue. Any thread may post, add and remove observers at any
// time, handlers included.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"

namespace jtk::services {

class NotificationCenter : public platform::NotificationCenter {
public:
    // Observers are called in the order they were added. post returns after the
    // posting-thread observers have run; the others are queued by then.
    void post(const std::string& name, const platform::Value& object = {},
              const platform::Value& userInfo = {}) override;
    // An object sender is held weakly: once it is gone the observer matches nothing.
    uint64_t addObserver(const std::string& name, const platform::Value& sender, platform::DeliveryQueue queue,
                         std::function<void(const platform::Notification&)> handler) override;
    // The center does not keep the queue alive: once it is gone, deliveries to
    // this observer are dropped.
    uint64_t addObserver(const std::string& name, const platform::Value& sender,
                         std::shared_ptr<platform::SerialQueue> queue,
                         std::function<void(const platform::Notification&)> handler) override;
    // After removal the observer is not called again, not even for
    // notifications already queued for it; a call already running on another
    // thread is not waited for. Unknown tokens are ignored.
    void removeObserver(uint64_t token) override;

private:
    struct Observer;
    uint64_t add(std::shared_ptr<Observer> observer);
    static void deliver(const std::shared_ptr<Observer>& observer, const platform::Notification& notification);

    std::mutex mutex_;
    uint64_t nextToken_ = 1;
    std::vector<std::shared_ptr<Observer>> observers_;  // in order of addition
};

}  // namespace jtk::services
