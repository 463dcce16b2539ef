#include "desktop/controls/Label.h"

namespace desktop {

Label::Label(const platform::Rect& frame, std::string text) : TextField(frame, std::move(text)) { setEditable(false); }

}  // namespace desktop
