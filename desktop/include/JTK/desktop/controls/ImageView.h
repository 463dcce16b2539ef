// An image view: shows a picture given in memory, or else the image stored in
// a file (PNG), scaled into its bounds.
#pragma once

#include <filesystem>
#include <memory>

#include "JTK/imaging/Image.h"
#include "JTK/desktop/View.h"

namespace jtk::desktop {

class ImageView : public View {
public:
    explicit ImageView(const platform::Rect& frame = {}, std::filesystem::path imageFile = {});

    const std::filesystem::path& imageFile() const { return imageFile_; }
    void setImageFile(std::filesystem::path file) { imageFile_ = std::move(file); }
    const std::shared_ptr<const imaging::Image>& image() const { return image_; }
    void setImage(std::shared_ptr<const imaging::Image> image) { image_ = std::move(image); }

    // The picture scaled proportionally into the bounds; a placeholder when
    // there is none or the file cannot be read.
    void draw(DrawContext& context) const override;

private:
    std::filesystem::path imageFile_;
    std::shared_ptr<const imaging::Image> image_;
};

}  // namespace jtk::desktop
