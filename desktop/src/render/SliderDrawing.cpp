// Sliders: a rounded track, filled in the accent colour up to the knob, and
// a round knob at the value.
#include <algorithm>

#include "JTK/desktop/controls/Slider.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

using platform::Rect;

void Slider::draw(DrawContext& context) const {
    Rect all = bounds();
    double knob = std::clamp(all.height() - 4, 6.0, 18.0);
    double radius = knob / 2;
    double trackStart = all.minX() + radius, trackEnd = all.maxX() - radius;
    if (trackEnd <= trackStart) return;
    double fraction = max_ > min_ ? (value_ - min_) / (max_ - min_) : 0;
    double knobX = trackStart + fraction * (trackEnd - trackStart);
    double y = all.midY();

    Rect track{trackStart - 2, y - 2, trackEnd - trackStart + 4, 4};
    context.fillRoundedRect(track, 2, Color::grey(0, 0.16));
    context.fillRoundedRect({track.minX(), track.minY(), knobX - track.minX(), 4}, 2,
                            enabled_ ? palette::accent : palette::disabledText);

    Rect circle{knobX - radius, y - radius, knob, knob};
    context.fillEllipse({circle.minX(), circle.minY() - 1, knob, knob}, Color::grey(0, 0.12));
    context.fillEllipse(circle, tracking_ ? palette::controlPressedTop : palette::controlTop);
    context.strokeEllipse({circle.minX() + 0.5, circle.minY() + 0.5, knob - 1, knob - 1}, palette::controlBorder);
}

}  // namespace jtk::desktop
