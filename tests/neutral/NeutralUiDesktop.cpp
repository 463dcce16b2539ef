// The neutral tests' toolkit on the embedded desktop.
#include <map>
#include <stdexcept>

#include "tests/neutral/NeutralUi.h"
#include "tests/support/DesktopFixtures.h"

namespace neutral {

namespace {

using namespace jtk;

class PressRecorder : public desktop::View {
public:
    using desktop::View::View;
    // A click's modifiers are those of its release: the press keeps what the source held.
    void mouseUp(const platform::Event& event, platform::Point) override {
        presses.push_back({static_cast<int>(event.clickState), event.flags & platform::eventFlags::deviceIndependentMask});
    }
    std::vector<Press> presses;
};

std::map<const platform::View*, int>& actionCounts() {
    static std::map<const platform::View*, int> counts;
    return counts;
}

template <class V>
V& as(const ViewPtr& view) {
    return dynamic_cast<V&>(*view);
}

}  // namespace

void closeAllWindows() {
    testsupport::closeAllWindows();
    actionCounts().clear();
}

std::shared_ptr<platform::Window> makeWindow(const Rect& content, const std::string& title) {
    return testsupport::makeWindow(content, title);
}

ViewPtr add(Kind kind, const ViewPtr& parent, const Rect& frame, const std::string& text) {
    std::shared_ptr<desktop::View> view;
    switch (kind) {
        case Kind::button: {
            auto button = std::make_shared<desktop::Button>(frame, text);
            button->setAction([](desktop::Button& pressed) { ++actionCounts()[&pressed]; });
            view = button;
            break;
        }
        case Kind::checkbox: view = std::make_shared<desktop::Button>(frame, text, desktop::Button::Type::checkbox); break;
        case Kind::label: view = std::make_shared<desktop::Label>(frame, text); break;
        case Kind::textField: {
            // Tab moves on to the next field made in the same window, as a
            // person expects of a form.
            static std::weak_ptr<desktop::TextField> previous;
            auto field = std::make_shared<desktop::TextField>(frame, text);
            if (auto before = previous.lock(); before && before->window() == parent->window()) before->setNextKeyView(field);
            previous = field;
            view = field;
            break;
        }
        case Kind::slider: view = std::make_shared<desktop::Slider>(frame, 0, 100, 0); break;
        case Kind::pressRecorder: view = std::make_shared<PressRecorder>(frame); break;
    }
    std::dynamic_pointer_cast<desktop::View>(parent)->addSubview(view);
    return view;
}

std::string className(Kind kind) {
    switch (kind) {
        case Kind::button:
        case Kind::checkbox: return "Button";
        case Kind::label: return "Label";
        case Kind::textField: return "TextField";
        case Kind::slider: return "Slider";
        case Kind::pressRecorder: return "PressRecorder";
    }
    return {};
}

void setName(const ViewPtr& view, const std::string& name) {
    view->addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
}

void setHidden(const ViewPtr& view, bool hidden) { as<desktop::View>(view).setHidden(hidden); }

void destroy(ViewPtr& view) {
    as<desktop::View>(view).removeFromSuperview();
    view.reset();
}

int actionCount(const ViewPtr& button) { return actionCounts()[button.get()]; }
std::string text(const ViewPtr& textField) { return as<desktop::TextField>(textField).stringValue(); }
double sliderValue(const ViewPtr& slider) { return as<desktop::Slider>(slider).doubleValue(); }
std::vector<Press> presses(const ViewPtr& recorder) { return as<PressRecorder>(recorder).presses; }

void onQueue(const std::function<void()>& body) {
    if (!testsupport::runOnQueue(body)) throw std::runtime_error("the body on the queue did not finish within 60 s");
}

int runOnToolkit(int&, char**, const std::function<int()>& body) {
    jtk::desktop::RunLoop::main().adoptCurrentThreadAsMain();
    return body();
}

}  // namespace neutral
