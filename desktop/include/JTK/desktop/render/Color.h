// A colour with straight alpha, each component from 0 to 1, and the few
// colours the desktop's controls share, so that every control looks part of
// one calm, light desktop.
#pragma once

namespace jtk::desktop {

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    static constexpr Color grey(double white, double alpha = 1) { return {white, white, white, alpha}; }
    static constexpr Color rgb(int red, int green, int blue, double alpha = 1) {
        return {red / 255.0, green / 255.0, blue / 255.0, alpha};
    }
    constexpr Color withAlpha(double newAlpha) const { return {red, green, blue, newAlpha}; }
    bool operator==(const Color&) const = default;
};

namespace palette {

inline constexpr Color windowBackground = Color::rgb(236, 236, 236);
inline constexpr Color desktopTop = Color::rgb(96, 128, 160);
inline constexpr Color desktopBottom = Color::rgb(56, 84, 112);
inline constexpr Color text = Color::grey(0.11);
inline constexpr Color secondaryText = Color::grey(0.45);
inline constexpr Color disabledText = Color::grey(0.62);
inline constexpr Color placeholderText = Color::grey(0.66);
inline constexpr Color accent = Color::rgb(10, 100, 220);
inline constexpr Color accentText = Color::grey(1);
inline constexpr Color selection = Color::rgb(180, 213, 254);
inline constexpr Color focusRing = Color::rgb(10, 100, 220, 0.45);
inline constexpr Color controlTop = Color::grey(1);
inline constexpr Color controlBottom = Color::rgb(246, 246, 246);
inline constexpr Color controlPressedTop = Color::rgb(212, 212, 212);
inline constexpr Color controlPressedBottom = Color::rgb(200, 200, 200);
inline constexpr Color controlBorder = Color::rgb(184, 184, 184);
inline constexpr Color separator = Color::rgb(208, 208, 208);
inline constexpr Color textBackground = Color::grey(1);
inline constexpr Color menuBackground = Color::rgb(246, 246, 246, 0.98);
inline constexpr Color menuBarBackground = Color::rgb(240, 240, 240, 0.96);
inline constexpr Color shadow = Color::grey(0, 0.10);

}  // namespace palette

}  // namespace jtk::desktop
