#include "desktop/controls/ImageView.h"

namespace desktop {

ImageView::ImageView(const platform::Rect& frame, std::filesystem::path imageFile)
    : View(frame), imageFile_(std::move(imageFile)) {}

}  // namespace desktop
