// An image view: shows the image stored in a file (PNG), scaled into its bounds.
#pragma once

#include <filesystem>

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class ImageView : public View {
public:
    explicit ImageView(const platform::Rect& frame = {}, std::filesystem::path imageFile = {});

    const std::filesystem::path& imageFile() const { return imageFile_; }
    void setImageFile(std::filesystem::path file) { imageFile_ = std::move(file); }

    // The picture scaled proportionally into the bounds; a placeholder when
    // the file cannot be read.
    void draw(DrawContext& context) const override;

private:
    std::filesystem::path imageFile_;
};

}  // namespace jtk::desktop
