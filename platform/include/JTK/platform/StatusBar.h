// The system status bar: items at the right end of the menu bar, each a
// button with a title that performs its action when a person chooses it.
// Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "JTK/platform/Object.h"
#include "JTK/platform/View.h"

namespace jtk::platform {

// An item as wide as its title.
inline constexpr double variableStatusItemLength = -1;
// The runtime class name of an item's button.
inline constexpr const char* statusBarButtonClassName = "StatusBarButton";

class StatusItem : public Object {
public:
    virtual std::string title() const = 0;
    virtual void setTitle(const std::string& title) = 0;
    // The target's action, sent when a person chooses the item; none does nothing.
    virtual void setAction(std::function<void()> action) = 0;
    // The view a person clicks; its class is statusBarButtonClassName.
    virtual std::shared_ptr<View> button() const = 0;
};

// A new item in the system status bar, left of the items made before it;
// length in points, or variableStatusItemLength.
std::shared_ptr<StatusItem> statusItemWithLength(double length);

}  // namespace jtk::platform
