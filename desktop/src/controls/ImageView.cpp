#include "JTK/desktop/controls/ImageView.h"

namespace jtk::desktop {

ImageView::ImageView(const platform::Rect& frame, std::filesystem::path imageFile)
    : View(frame), imageFile_(std::move(imageFile)) {}

}  // namespace jtk::desktop
