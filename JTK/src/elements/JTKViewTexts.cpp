#include "elements/JTKViewTexts.h"

#include "run/JTKMainThread.h"
#include "elements/JTKReadingOrder.h"

namespace jtk {

namespace {

// The text result of an argument-less method the view may implement by name.
std::string textOfMethod(platform::View& view, const char* selector) {
    if (!view.respondsToSelector(selector)) return {};
    platform::Value result = view.performSelector(selector);
    const std::string* text = result.text();
    return text ? *text : std::string();
}

}  // namespace

std::string jtkReadViewName(platform::View& view) { return textOfMethod(view, "hbViewName"); }

std::string jtkReadViewValue(platform::View& view) {
    if (view.respondsToSelector("hbViewValue")) {
        platform::Value result = view.performSelector("hbViewValue");
        if (const std::string* text = result.text()) return *text;
        if (result.isNumber()) return result.numberDescription();
    }
    // Only the view's own value method turns numbers into text; a slider's
    // numeric accessibility value gives the empty text.
    platform::Value accessibility = view.accessibilityValue();
    const std::string* text = accessibility.text();
    return text ? *text : std::string();
}

std::string jtkReadViewTitle(platform::View& view) { return textOfMethod(view, "title"); }

std::string jtkReadViewTypeName(const platform::View& view) { return view.className(); }

std::string viewName(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] { return jtkReadViewName(*view); });
}

std::string viewValue(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] { return jtkReadViewValue(*view); });
}

std::string viewTitle(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] { return jtkReadViewTitle(*view); });
}

std::string viewTypeName(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] { return jtkReadViewTypeName(*view); });
}

std::string jtkDefaultLookupDescription(const std::string& name, platform::Point centreOnScreen) {
    return name + std::to_string(jtkTruncatedCoordinate(centreOnScreen.x)) +
           std::to_string(jtkTruncatedCoordinate(centreOnScreen.y));
}

}  // namespace jtk
