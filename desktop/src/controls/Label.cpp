#include "JTK/desktop/controls/Label.h"

namespace jtk::desktop {

Label::Label(const platform::Rect& frame, std::string text) : TextField(frame, std::move(text)) { setEditable(false); }

}  // namespace jtk::desktop
