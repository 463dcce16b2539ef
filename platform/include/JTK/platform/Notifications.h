// The default notification center: post with an object and an optional
// user-info dictionary; observe by name and sender, delivered on the posting
// thread or on the main queue.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "JTK/platform/Value.h"

namespace jtk::platform {

class SerialQueue;

struct Notification {
    std::string name;
    Value object;
    Value userInfo;  // a dictionary or none
};

enum class DeliveryQueue { postingThread, mainQueue };

class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;
    virtual void post(const std::string& name, const Value& object = {}, const Value& userInfo = {}) = 0;
    // Empty name: every name. Sender none: any sender; otherwise only
    // notifications whose object equals the sender (objects by identity).
    virtual uint64_t addObserver(const std::string& name, const Value& sender, DeliveryQueue queue,
                                 std::function<void(const Notification&)> handler) = 0;
    // Delivers on the given serial queue.
    virtual uint64_t addObserver(const std::string& name, const Value& sender, std::shared_ptr<SerialQueue> queue,
                                 std::function<void(const Notification&)> handler) = 0;
    virtual void removeObserver(uint64_t token) = 0;
};

NotificationCenter& defaultNotificationCenter();

}  // namespace jtk::platform
