// The kinds of parts and how a widget lists its own (QtParts.h says what a
// part is). Each list function is given the parts listed last time and
// keeps those that still stand for the same tab, action, item or section,
// so that an element keeps its view. Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "QtPart.h"

class QAbstractItemView;
class QHeaderView;
class QMenuBar;
class QTabBar;

namespace jtk::qt {

using PartList = std::vector<std::shared_ptr<QtPart>>;

// An item view lists at most this many items (a header as many sections),
// so that a search through a very long list stays affordable; the rest
// cannot be found by a test.
constexpr size_t mostItems = 5000;

// Each visible tab.
PartList tabParts(QTabBar* bar, const PartList& previous);
// Each visible title of the bar.
PartList barTitleParts(QMenuBar* bar, const PartList& previous);
// Each item of the view's shown rows and columns, row by row; a tree's
// expanded rows are followed by their children. Owned by the viewport.
PartList itemParts(QAbstractItemView* view, const PartList& previous);
// Each shown section in visual order. Owned by the header's viewport.
PartList sectionParts(QHeaderView* header, const PartList& previous);

}  // namespace jtk::qt
