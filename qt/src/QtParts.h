// What a person sees inside one widget as separate things: the tabs of a
// tab bar, the titles of a menu bar, the items (rows, cells, list entries)
// of an item view, the sections of a header. Each is a view of its own
// below its widget (an item's below the item view's viewport, a section's
// below the header's), with the frame Qt gives it (tabRect, actionGeometry,
// visualRect, the section's position), its text as title and value, no
// subviews, and a click at its centre reaching the widget at that point. A
// part is the same view object for as long as what it stands for exists, so
// that an element keeps it; the widget's wrapper keeps its parts (QtPart.h
// is a part, QtPartKinds.h its kinds). Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "JTK/platform/View.h"

class QWidget;

namespace jtk::qt {

// The parts of a widget, in their order (an item view's, row by row; a
// tree's expanded rows depth-first); empty for a widget without parts.
// Passed the viewport for an item view or a header.
std::vector<std::shared_ptr<platform::View>> partsOf(QWidget* widget);

// Whether the view is a part, and of which widget (null for other views).
QWidget* ownerOfPart(const platform::View& view);

// Scrolls the part into sight within its owner (an item view's item, a
// header's section); false for other views.
bool scrollPartIntoView(platform::View& view);

}  // namespace jtk::qt
