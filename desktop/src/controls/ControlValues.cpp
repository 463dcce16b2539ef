// The platform's setters of control values on the embedded desktop's views.
#include "JTK/platform/Controls.h"

#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/TextField.h"

namespace jtk::platform {

bool setImage(View& imageView, std::shared_ptr<const imaging::Image> image) {
    auto* view = dynamic_cast<desktop::ImageView*>(&imageView);
    if (!view) return false;
    view->setImage(std::move(image));
    return true;
}

std::shared_ptr<const imaging::Image> image(const View& imageView) {
    const auto* view = dynamic_cast<const desktop::ImageView*>(&imageView);
    return view ? view->image() : nullptr;
}

bool setStringValue(View& textField, const std::string& text) {
    auto* view = dynamic_cast<desktop::TextField*>(&textField);
    if (!view) return false;
    view->setStringValue(text);
    return true;
}

}  // namespace jtk::platform
