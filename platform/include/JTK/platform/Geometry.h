// Points and rectangles in points (doubles), with the containment rule of the
// platform: minimum edges are inside a rectangle, maximum edges are outside.
#pragma once

#include <cmath>

namespace jtk::platform {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    Point origin;
    Size size;

    Rect() = default;
    Rect(double x, double y, double width, double height) : origin{x, y}, size{width, height} {}

    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }
    double midX() const { return origin.x + size.width / 2; }
    double midY() const { return origin.y + size.height / 2; }
    double width() const { return size.width; }
    double height() const { return size.height; }
    bool isEmpty() const { return size.width <= 0 || size.height <= 0; }
    bool operator==(const Rect&) const = default;
};

inline bool pointInRect(Point p, const Rect& r) {
    return p.x >= r.minX() && p.x < r.maxX() && p.y >= r.minY() && p.y < r.maxY();
}

inline Rect intersection(const Rect& a, const Rect& b) {
    double x0 = std::fmax(a.minX(), b.minX()), y0 = std::fmax(a.minY(), b.minY());
    double x1 = std::fmin(a.maxX(), b.maxX()), y1 = std::fmin(a.maxY(), b.maxY());
    if (x1 <= x0 || y1 <= y0) return Rect{};
    return Rect{x0, y0, x1 - x0, y1 - y0};
}

inline Rect offsetRect(const Rect& r, double dx, double dy) {
    return Rect{r.origin.x + dx, r.origin.y + dy, r.size.width, r.size.height};
}

}  // namespace jtk::platform
