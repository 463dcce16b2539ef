// Windows described as data. An interface file holds a window, its views,
// the outlets that name some of them and the actions its controls send.
// Loading the file by name makes the window and connects it to an owner:
// the owner is told each outlet and receives each action.
#pragma once

#include <memory>
#include <string>

namespace jtk::platform {

class View;
class Window;

class InterfaceOwner {
public:
    virtual ~InterfaceOwner() = default;
    // A view of the file that names this outlet; called once per outlet while loading.
    virtual void connectOutlet(const std::string& outlet, const std::shared_ptr<View>& view) = 0;
    // A control of the window sent this action (main thread).
    virtual void performAction(const std::string& action, const std::shared_ptr<View>& sender) = 0;
};

struct LoadedInterface {
    std::shared_ptr<Window> window;  // null when the file could not be loaded
    std::string error;               // why, in one line
};

// Loads the interface file of that name from the platform's resources and
// connects it to the owner, which the window's controls hold weakly. The
// window starts hidden. Main thread only.
LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>& owner);

}  // namespace jtk::platform
