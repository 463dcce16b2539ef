// What the backend-neutral tests need from a toolkit: windows, a few standard
// controls and a view that records its presses, built with the toolkit's own
// classes. The same tests are compiled once against each backend, which
// implements these functions (NeutralUiDesktop.cpp, NeutralUiQt.cpp) and the
// test program's main. Frames follow the platform: screen and superview
// coordinates with y up. Main thread only, unless a function says otherwise.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/View.h"
#include "JTK/platform/Window.h"

namespace neutral {

using jtk::platform::Rect;
using ViewPtr = std::shared_ptr<jtk::platform::View>;

enum class Kind { button, checkbox, label, textField, slider, pressRecorder };

// One click as the toolkit delivered it to a press recorder, recorded at its
// release: 1 for a single click, 2 for the second click of a double click,
// with the platform's modifier flags.
struct Press {
    int clickCount = 0;
    uint64_t flags = 0;
    bool operator==(const Press&) const = default;
};

// Closes every window the tests made; the next test starts with none.
void closeAllWindows();
// A shown, key window whose content area is the rectangle on screen.
std::shared_ptr<jtk::platform::Window> makeWindow(const Rect& content, const std::string& title);
// A control in the parent (a content view or a view made here) with its text:
// a button's or checkbox's title (a checkbox starts off), a label's or text field's text; a slider from 0 to 100 at 0.
// Tab moves from a text field to the next one made in the same window.
ViewPtr add(Kind kind, const ViewPtr& parent, const Rect& frame, const std::string& text = {});
// The toolkit's class name of each kind, as the framework's type searches see it.
std::string className(Kind kind);
// Gives a view the name the framework finds it by.
void setName(const ViewPtr& view, const std::string& name);
void setHidden(const ViewPtr& view, bool hidden);
// Takes the view out of its window and lets the toolkit destroy it.
void destroy(ViewPtr& view);
// How often a button was pressed (its action ran), a text field's text, a
// slider's value, and a press recorder's presses.
int actionCount(const ViewPtr& button);
std::string text(const ViewPtr& textField);
double sliderValue(const ViewPtr& slider);
std::vector<Press> presses(const ViewPtr& recorder);

// Sets the toolkit up on this (main) thread, runs the program's body there and
// returns its status: the tests' and the benchmarks' main.
int runOnToolkit(int& argc, char** argv, const std::function<int()>& body);

// Runs the body on a serial queue, as a test run does, while this (main)
// thread runs the toolkit's event loop; returns when the body has finished,
// and throws when it has not after 60 seconds.
void onQueue(const std::function<void()>& body);

}  // namespace neutral
