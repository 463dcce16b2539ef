// The difference picture: the accepted image with every pixel that is not
// exactly equal in the new image tinted red. No tolerance, all four channels
// compared as stored (straight RGBA, never blended by alpha first), so a
// pixel that differs only in alpha is marked, and so is a transparent pixel
// whose colour changed.
//
// The picture has the accepted image's size. Positions of the accepted image
// that lie outside the new image are compared with a transparent pixel
// (0, 0, 0, 0). A marked pixel (r, g, b, a) becomes (max, g/2, b/2, a): red
// full, green and blue halved, alpha kept. Halving is that of a normalised
// channel stored back at the same depth by rounding to nearest, ties up, as
// the usual float-to-integer channel conversion does: (v + 1) >> 1, so 255
// becomes 128, 1 stays 1 and 0 stays 0.
#pragma once

#include <cstdint>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::imaging {

// The difference picture; differingPixels, when given, receives the number
// of marked pixels.
Image imageDifference(const Image& accepted, const Image& newImage, uint64_t* differingPixels = nullptr);
Image16 imageDifference(const Image16& accepted, const Image16& newImage, uint64_t* differingPixels = nullptr);

// The difference picture encoded as PNG (8-bit or 16-bit RGBA, as the
// images), made row by row without holding the whole picture; empty when it
// cannot be encoded.
std::vector<uint8_t> imageDifferencePNG(const Image& accepted, const Image& newImage,
                                        uint64_t* differingPixels = nullptr);
std::vector<uint8_t> imageDifferencePNG(const Image16& accepted, const Image16& newImage,
                                        uint64_t* differingPixels = nullptr);

// The number of pixels the difference picture would mark, without making it.
uint64_t countDifferingPixels(const Image& accepted, const Image& newImage);
uint64_t countDifferingPixels(const Image16& accepted, const Image16& newImage);

}  // namespace jtk::imaging
