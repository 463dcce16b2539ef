// A box: a titled group around other views, which are its subviews. It
// answers the runtime method "title".
#pragma once

#include <string>

#include "desktop/View.h"

namespace desktop {

class Box : public View {
public:
    explicit Box(const platform::Rect& frame = {}, std::string title = {});

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

private:
    std::string title_;
};

}  // namespace desktop
