// The backend's own window order. A headless screen ignores raise(), so the
// backend keeps the stacking itself: showing, activating or ordering a window
// front moves it to the front. Mouse events go to the topmost window under
// the pointer in this order, and the application lists its windows in it.
// Main thread only.
#pragma once

#include <cstdint>
#include <vector>

class QWidget;
class QWindow;

namespace jtk::qt {

// A top-level widget that the application counts as a window: no popup,
// tool tip or desktop, and not closed (a closed window is listed again when
// it is shown again).
bool isListedWindow(const QWidget* widget);
// The listed windows, front first (visible or not).
std::vector<QWidget*> orderedWindows();
// The shown pop-ups that a test reads and clicks like windows: tool tips,
// and lists to choose from (a combo box's, a completer's), the open pop-up
// first. Menus are not among them: they are menus.
std::vector<QWidget*> shownPopupWindows();
// The first visible one of them that takes the focus; null when none.
QWidget* frontVisibleWindow(const QWidget* except = nullptr);
void bringToFront(QWidget* topLevel);
void setClosed(QWidget* topLevel, bool closed);
// The visible top-level widget (popups included, topmost first) whose frame
// holds the point in Qt's global coordinates; null when none does.
QWidget* topLevelWidgetAt(double globalX, double globalY);
// The top-level widget of a window of the toolkit; null when none.
QWidget* topLevelWidgetOf(const QWindow* window);
// The number events carry for the window of a top-level widget.
int64_t windowNumberOf(const QWidget* topLevel);

}  // namespace jtk::qt
