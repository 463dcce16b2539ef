// A box: a titled group around other views, which are its subviews. It
// answers the runtime method "title".
#pragma once

#include <string>

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class Box : public View {
public:
    explicit Box(const platform::Rect& frame = {}, std::string title = {});

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    void draw(DrawContext& context) const override;

private:
    std::string title_;
};

}  // namespace jtk::desktop
