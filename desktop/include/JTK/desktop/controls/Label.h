// A label: a text field that shows text and cannot be edited.
#pragma once

#include "JTK/desktop/controls/TextField.h"

namespace jtk::desktop {

class Label : public TextField {
public:
    explicit Label(const platform::Rect& frame = {}, std::string text = {});
};

}  // namespace jtk::desktop
