// The main queue and labelled serial queues.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace jtk::platform {

bool isMainThread();
// Runs work on the main thread and waits for it; inline when already there.
void dispatchSyncMain(std::function<void()> work);
void dispatchAsyncMain(std::function<void()> work);
void dispatchAfterMain(double seconds, std::function<void()> work);

// A queue that runs its work one item at a time on its own thread.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    virtual const std::string& label() const = 0;
    virtual void async(std::function<void()> work) = 0;
    virtual void sync(std::function<void()> work) = 0;
    virtual void after(double seconds, std::function<void()> work) = 0;
    // True when called from this queue's thread.
    virtual bool isCurrent() const = 0;
};

std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label);

}  // namespace jtk::platform
