// Drawing for the synthetic captures: a few primitives on straight RGBA and
// a made-up font of antialiased glyphs.
#include "ScreenshotLikeImages.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace jtk::bench {

using imaging::Image;

namespace {

// splitmix64: small, and the same numbers on every platform.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}
    uint64_t next() {
        uint64_t z = (state_ += 0x9e3779b97f4a7c15);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }
    int below(int bound) { return static_cast<int>(next() % static_cast<uint64_t>(bound)); }
    int between(int low, int high) { return low + below(high - low + 1); }

private:
    uint64_t state_;
};

struct Colour {
    uint8_t r, g, b, a = 255;
};

void blend(Image& image, int x, int y, Colour colour, int coverage) {
    if (x < 0 || y < 0 || x >= int(image.width) || y >= int(image.height) || coverage <= 0) return;
    uint8_t* p = image.pixel(x, y);
    int sourceAlpha = colour.a * coverage / 255;
    int outAlpha = sourceAlpha + p[3] * (255 - sourceAlpha) / 255;
    if (outAlpha == 0) return;
    const uint8_t source[3] = {colour.r, colour.g, colour.b};
    for (int c = 0; c < 3; ++c) {
        p[c] = uint8_t((source[c] * sourceAlpha + p[c] * p[3] * (255 - sourceAlpha) / 255) / outAlpha);
    }
    p[3] = uint8_t(outAlpha);
}

void fill(Image& image, int x0, int y0, int w, int h, Colour colour) {
    for (int y = std::max(0, y0); y < std::min(int(image.height), y0 + h); ++y) {
        for (int x = std::max(0, x0); x < std::min(int(image.width), x0 + w); ++x) {
            uint8_t* p = image.pixel(x, y);
            p[0] = colour.r, p[1] = colour.g, p[2] = colour.b, p[3] = colour.a;
        }
    }
}

void verticalGradient(Image& image, int x0, int y0, int w, int h, Colour top, Colour bottom) {
    for (int row = 0; row < h; ++row) {
        auto mix = [&](uint8_t a, uint8_t b) { return uint8_t(a + (b - a) * row / std::max(1, h - 1)); };
        fill(image, x0, y0 + row, w, 1, {mix(top.r, bottom.r), mix(top.g, bottom.g), mix(top.b, bottom.b)});
    }
}

void frame(Image& image, int x0, int y0, int w, int h, Colour colour) {
    fill(image, x0, y0, w, 1, colour);
    fill(image, x0, y0 + h - 1, w, 1, colour);
    fill(image, x0, y0, 1, h, colour);
    fill(image, x0 + w - 1, y0, 1, h, colour);
}

// Rounded corners cut out to transparency, with an antialiased edge.
void roundCorners(Image& image, int radius) {
    for (int y = 0; y < radius; ++y) {
        for (int x = 0; x < radius; ++x) {
            double distance = std::hypot(radius - x - 0.5, radius - y - 0.5);
            double keep = std::clamp(radius - distance + 0.5, 0.0, 1.0);
            for (auto [px, py] : {std::pair{x, y}, {int(image.width) - 1 - x, y}, {x, int(image.height) - 1 - y},
                                  {int(image.width) - 1 - x, int(image.height) - 1 - y}}) {
                if (px < 0 || py < 0 || px >= int(image.width) || py >= int(image.height)) continue;
                uint8_t* p = image.pixel(px, py);
                p[3] = uint8_t(p[3] * keep);
                if (p[3] == 0) p[0] = p[1] = p[2] = 0;
            }
        }
    }
}

// 64 glyphs of 7 by 11 coverage values: a few strokes each, edges softened.
using Glyph = std::array<std::array<uint8_t, 7>, 11>;

const std::array<Glyph, 64>& font() {
    static const auto glyphs = [] {
        std::array<Glyph, 64> made{};
        Random random(42);
        for (auto& glyph : made) {
            bool ink[11][7] = {};
            for (int stroke = random.between(2, 4); stroke > 0; --stroke) {
                int x = random.below(7), y = random.between(2, 10), dx = random.between(-1, 1),
                    dy = random.between(-1, 1), length = random.between(3, 8);
                if (dx == 0 && dy == 0) dy = 1;
                for (int i = 0; i < length; ++i, x += dx, y += dy) {
                    if (x >= 0 && x < 7 && y >= 0 && y < 11) ink[y][x] = true;
                }
            }
            for (int y = 0; y < 11; ++y) {
                for (int x = 0; x < 7; ++x) {
                    int neighbours = 0;
                    for (auto [nx, ny] : {std::pair{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}}) {
                        neighbours += nx >= 0 && nx < 7 && ny >= 0 && ny < 11 && ink[ny][nx];
                    }
                    glyph[y][x] = ink[y][x] ? 255 : uint8_t(std::min(neighbours * 45, 140));
                }
            }
        }
        return made;
    }();
    return glyphs;
}

void text(Image& image, int x, int y, int maxWidth, Colour colour, Random& random) {
    int end = x + maxWidth;
    while (x + 7 <= end) {
        for (int letters = random.between(2, 8); letters > 0 && x + 7 <= end; --letters, x += 8) {
            const Glyph& glyph = font()[random.below(64)];
            for (int gy = 0; gy < 11; ++gy) {
                for (int gx = 0; gx < 7; ++gx) blend(image, x + gx, y + gy, colour, glyph[gy][gx]);
            }
        }
        x += 5;
    }
}

const Colour window{236, 236, 236}, ink{30, 30, 30}, border{180, 180, 180}, white{255, 255, 255};

void drawButton(Image& image, int x, int y, int w, int h, Random& random) {
    verticalGradient(image, x, y, w, h, {252, 252, 252}, {222, 222, 226});
    frame(image, x, y, w, h, border);
    text(image, x + w / 4, y + (h - 11) / 2, w / 2, ink, random);
}

void drawTextField(Image& image, int x, int y, int w, int h, Random& random) {
    fill(image, x, y, w, h, white);
    frame(image, x, y, w, h, border);
    text(image, x + 4, y + (h - 11) / 2, w * 2 / 3, ink, random);
}

void drawList(Image& image, int x, int y, int w, int h, Random& random) {
    for (int row = 0; row * 20 < h; ++row) {
        fill(image, x, y + row * 20, w, std::min(20, h - row * 20), row % 2 ? Colour{244, 245, 247} : white);
        if (row == 3) fill(image, x, y + row * 20, w, 20, {60, 120, 215});
        if (row * 20 + 15 < h) text(image, x + 6, y + row * 20 + 4, w / 2, row == 3 ? white : ink, random);
    }
    frame(image, x, y, w, h, border);
}

void drawPhoto(Image& image, int x0, int y0, int w, int h, Random& random) {
    double fx = 0.02 + random.below(100) / 4000.0, fy = 0.03 + random.below(100) / 4000.0;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            int noise = random.below(9) - 4;
            auto channel = [&](double phase) {
                return uint8_t(std::clamp(128 + 90 * std::sin(x * fx + phase) * std::cos(y * fy) + noise, 0.0, 255.0));
            };
            fill(image, x0 + x, y0 + y, 1, 1, {channel(0), channel(1.3), channel(2.6)});
        }
    }
}

void drawWindowContent(Image& image, int x0, int y0, int w, int h, Random& random) {
    fill(image, x0, y0, w, h, window);
    for (int y = y0 + 12; y + 30 < y0 + h; y += random.between(30, 60)) {
        int x = x0 + 12;
        while (x + 100 < x0 + w) {
            int kind = random.below(4), cw = random.between(80, 220), ch = kind == 1 ? 22 : 28;
            cw = std::min(cw, x0 + w - x - 12);
            if (kind == 0) drawButton(image, x, y, cw, ch, random);
            if (kind == 1) drawTextField(image, x, y, cw, ch, random);
            if (kind >= 2) text(image, x, y + 8, cw, ink, random);
            x += cw + 16;
        }
    }
}

}  // namespace

Image makeView(int kind, uint32_t width, uint32_t height, uint64_t seed) {
    Image image(width, height);
    Random random(seed);
    int w = int(width), h = int(height);
    switch (kind) {
        case 0: drawButton(image, 0, 0, w, h, random), roundCorners(image, 4); break;
        case 1: text(image, 0, (h - 11) / 2, w, ink, random); break;  // transparent background
        case 2: drawTextField(image, 0, 0, w, h, random); break;
        case 3:
            fill(image, 0, 0, w, h, {228, 228, 230});
            frame(image, 0, 0, w, h, border);
            text(image, 8, 4, w / 3, ink, random);
            drawWindowContent(image, 4, 20, w - 8, h - 24, random);
            break;
        case 4: drawList(image, 0, 0, w, h, random); break;
        case 5: drawPhoto(image, 0, 0, w, h, random); break;
        default: drawWindowContent(image, 0, 0, w, h, random); break;
    }
    return image;
}

std::vector<Image> makeViewSet(int count) {
    // Kinds in the proportions of a form-heavy window: many small controls,
    // some containers, a few image views and whole contents.
    static constexpr int kinds[20] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 2, 2, 2, 3, 3, 4, 4, 5, 6};
    std::vector<Image> views;
    Random random(7);
    for (int i = 0; i < count; ++i) {
        int kind = kinds[i % 20];
        uint32_t w = 0, h = 0;
        switch (kind) {
            case 0: w = random.between(70, 160), h = random.between(22, 32); break;
            case 1: w = random.between(80, 320), h = 17; break;
            case 2: w = random.between(120, 320), h = 22; break;
            case 3: w = random.between(280, 520), h = random.between(180, 380); break;
            case 4: w = random.between(240, 480), h = random.between(200, 420); break;
            case 5: w = random.between(96, 256), h = random.between(96, 256); break;
            default: w = random.between(640, 960), h = random.between(480, 720); break;
        }
        views.push_back(makeView(kind, w, h, random.next()));
    }
    return views;
}

std::vector<Image> makeHiDPIViewSet(int count) {
    std::vector<Image> views = makeViewSet(count);
    for (Image& view : views) {
        Image doubled(view.width * 2, view.height * 2);
        for (uint32_t y = 0; y < doubled.height; ++y) {
            for (uint32_t x = 0; x < doubled.width; ++x) std::copy_n(view.pixel(x / 2, y / 2), 4, doubled.pixel(x, y));
        }
        view = std::move(doubled);
    }
    return views;
}

Image makeScreen(uint32_t width, uint32_t height, uint64_t seed) {
    Image image(width, height);
    Random random(seed);
    int w = int(width), h = int(height);
    for (int y = 0; y < h; ++y) {
        fill(image, 0, y, w, 1, {uint8_t(40 + 60 * y / h), uint8_t(70 + 50 * y / h), uint8_t(120 + 40 * y / h)});
    }
    fill(image, 0, 0, w, 24, {246, 246, 246});
    text(image, 10, 6, w / 3, ink, random);
    for (int windows = 8; windows > 0; --windows) {
        int ww = random.between(w / 5, w / 2), wh = random.between(h / 5, h / 2);
        int wx = random.between(0, w - ww), wy = random.between(30, h - wh);
        verticalGradient(image, wx, wy, ww, 28, {235, 235, 235}, {215, 215, 215});
        text(image, wx + ww / 2 - 60, wy + 8, 120, ink, random);
        drawWindowContent(image, wx, wy + 28, ww, wh - 28, random);
        if (windows % 3 == 0) {
            drawPhoto(image, wx + 20, wy + 60, std::min(300, ww - 40), std::min(200, wh - 80), random);
        }
        frame(image, wx, wy, ww, wh, {120, 120, 120});
    }
    return image;
}

uint64_t changeRegions(Image& image, double fraction, uint64_t seed) {
    Random random(seed);
    auto target = static_cast<uint64_t>(double(image.width) * image.height * fraction);
    uint64_t changed = 0;
    std::vector<bool> done(size_t{image.width} * image.height);  // a pixel is shifted once
    while (changed < target) {
        int w = random.between(40, 400), h = random.between(12, 60);
        int x0 = random.below(int(image.width) - w), y0 = random.below(int(image.height) - h);
        for (int y = y0; y < y0 + h && changed < target; ++y) {
            for (int x = x0; x < x0 + w && changed < target; ++x) {
                if (done[size_t(y) * image.width + size_t(x)]) continue;
                done[size_t(y) * image.width + size_t(x)] = true;
                uint8_t* p = image.pixel(x, y);
                p[0] = uint8_t(p[0] ^ 0x80), p[1] = uint8_t(p[1] + 24);
                ++changed;
            }
        }
    }
    return changed;
}

}  // namespace jtk::bench
