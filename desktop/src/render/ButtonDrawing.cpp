// Buttons: push buttons (normal, pressed, default, disabled), checkboxes, and
// pop-up buttons with their arrows.
#include <algorithm>

#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double bezelRadius = 5;
constexpr double checkboxSize = 14;

// The bezel sits one point inside the bounds at the sides and two at the
// bottom, where its shadow falls.
Rect bezelRect(const Rect& bounds) {
    return {bounds.minX() + 1.5, bounds.minY() + 2.5, bounds.width() - 3, bounds.height() - 4};
}

void drawBezel(DrawContext& context, const Rect& bounds, bool pressed, bool isDefault) {
    Rect bezel = bezelRect(bounds);
    context.fillRoundedRect({bezel.minX(), bezel.minY() - 1, bezel.width(), bezel.height()}, bezelRadius,
                            Color::grey(0, 0.07));
    if (isDefault) {
        Color top = pressed ? Color::rgb(8, 80, 184) : Color::rgb(48, 134, 240);
        Color bottom = pressed ? Color::rgb(6, 70, 168) : palette::accent;
        context.fillRoundedRectGradient(bezel, bezelRadius, top, bottom);
        context.strokeRoundedRect(bezel, bezelRadius, Color::rgb(6, 74, 170));
        return;
    }
    context.fillRoundedRectGradient(bezel, bezelRadius, pressed ? palette::controlPressedTop : palette::controlTop,
                                    pressed ? palette::controlPressedBottom : palette::controlBottom);
    context.strokeRoundedRect(bezel, bezelRadius, palette::controlBorder);
}

void drawCheckbox(DrawContext& context, const Rect& bounds, bool on, bool pressed, bool enabled,
                  const std::string& title) {
    Rect box{bounds.minX() + 2.5, bounds.midY() - checkboxSize / 2 + 0.5, checkboxSize - 1, checkboxSize - 1};
    if (on) {
        context.fillRoundedRect(box, 3, pressed ? Color::rgb(8, 80, 184) : palette::accent);
        // The tick: down to the bottom third, then up to the top right.
        context.strokeLine({box.minX() + 3, box.midY()}, {box.minX() + 5.5, box.minY() + 3}, palette::accentText, 2);
        context.strokeLine({box.minX() + 5.5, box.minY() + 3}, {box.maxX() - 3, box.maxY() - 3}, palette::accentText, 2);
    } else {
        context.fillRoundedRect(box, 3, pressed ? palette::controlPressedTop : palette::controlTop);
        context.strokeRoundedRect(box, 3, palette::controlBorder);
    }
    Rect titleRect{bounds.minX() + checkboxSize + 8, bounds.minY(), bounds.width() - checkboxSize - 8, bounds.height()};
    context.drawText(title, titleRect, {Font::system(), enabled ? palette::text : palette::disabledText});
}

}  // namespace

void Button::draw(DrawContext& context) const {
    Rect all = bounds();
    if (type_ == Type::checkbox) {
        drawCheckbox(context, all, state_ == onState, highlighted_, enabled_, title());
        return;
    }
    bool isDefault = keyEquivalent_ == "\r" && enabled_;
    drawBezel(context, all, highlighted_, isDefault);
    Color color = !enabled_ ? palette::disabledText : isDefault ? palette::accentText : palette::text;
    Rect bezel = bezelRect(all);
    context.drawText(title(), {bezel.minX() + 6, bezel.minY(), bezel.width() - 12, bezel.height()},
                     {Font::system(), color, TextAlignment::center});
}

void PopUpButton::draw(DrawContext& context) const {
    Rect all = bounds();
    drawBezel(context, all, isHighlighted(), false);
    Rect bezel = bezelRect(all);
    double arrowWidth = std::min(16.0, bezel.width() / 3);
    Rect arrows{bezel.maxX() - arrowWidth - 3, bezel.minY() + 3, arrowWidth, bezel.height() - 6};
    context.fillRoundedRect(arrows, 3, isEnabled() ? palette::accent : palette::disabledText);
    // Two chevrons, one pointing up and one down, around the middle.
    double cx = arrows.midX(), cy = arrows.midY();
    context.strokeLine({cx - 3, cy + 2}, {cx, cy + 5}, palette::accentText, 1.5);
    context.strokeLine({cx, cy + 5}, {cx + 3, cy + 2}, palette::accentText, 1.5);
    context.strokeLine({cx - 3, cy - 2}, {cx, cy - 5}, palette::accentText, 1.5);
    context.strokeLine({cx, cy - 5}, {cx + 3, cy - 2}, palette::accentText, 1.5);
    context.drawText(title(), {bezel.minX() + 9, bezel.minY(), arrows.minX() - bezel.minX() - 12, bezel.height()},
                     {Font::system(), isEnabled() ? palette::text : palette::disabledText});
}

}  // namespace jtk::desktop
