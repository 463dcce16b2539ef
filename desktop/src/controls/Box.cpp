#include "JTK/desktop/controls/Box.h"

namespace jtk::desktop {

Box::Box(const platform::Rect& frame, std::string title) : View(frame), title_(std::move(title)) {
    addMethod("title", [](Object& self, const platform::Value&) -> platform::Value {
        return static_cast<Box&>(self).title();
    });
}

}  // namespace jtk::desktop
