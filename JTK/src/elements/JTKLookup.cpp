// The texts a view is known by (name, value, title, type name) and the
// lookup rule that matches a lookup string against them.
#include "elements/JTKLookup.h"

#include <algorithm>
#include <optional>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include "elements/JTKReadingOrder.h"
#include "elements/JTKViewTexts.h"
#include "run/JTKMainThread.h"

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

namespace {

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// UTF-16 form of text, or nothing when text is not well-formed UTF-8 (ICU's
// lenient decoder would turn different broken texts into equal replacement
// characters).
std::optional<icu::UnicodeString> decodeStrict(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<int32_t>(text.size()), &status);
    if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
    icu::UnicodeString result;
    if (length == 0) return result;
    status = U_ZERO_ERROR;
    UChar* buffer = result.getBuffer(length);
    u_strFromUTF8(buffer, length, &length, text.data(), static_cast<int32_t>(text.size()), &status);
    result.releaseBuffer(U_SUCCESS(status) ? length : 0);
    if (U_FAILURE(status)) return std::nullopt;
    return result;
}

}  // namespace

bool jtkTextEquals(const std::string& a, const std::string& b) {
    if (a == b) return true;
    // ASCII text is already in normal form; two different ASCII texts differ.
    // (A non-ASCII text may still decompose to ASCII, such as the Kelvin sign.)
    if (isAscii(a) && isAscii(b)) return false;
    if (a.size() > static_cast<size_t>(INT32_MAX) || b.size() > static_cast<size_t>(INT32_MAX)) return false;
    auto ua = decodeStrict(a);
    auto ub = decodeStrict(b);
    if (!ua || !ub) return false;  // byte comparison already failed
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status)) return false;
    icu::UnicodeString na = nfd->normalize(*ua, status);
    icu::UnicodeString nb = nfd->normalize(*ub, status);
    return U_SUCCESS(status) && na == nb;
}

bool jtkPassesTypeRule(const std::shared_ptr<platform::View>& view, const JTKClass& type) {
    if (!view) return false;
    return jtkTextEquals(viewTypeName(view), type.name);
}

bool jtkViewMatchesLookup(platform::View& view, const std::string& name, const std::string& lookupDescription,
                          const std::string& lookup) {
    bool matches = jtkTextEquals(name, lookup) || jtkTextEquals(lookupDescription, lookup) ||
                   jtkTextEquals(jtkReadViewTitle(view), lookup) || jtkTextEquals(jtkReadViewTypeName(view), lookup) ||
                   jtkTextEquals(jtkReadViewValue(view), lookup);
    return matches && !view.isHidden();
}

}  // namespace jtk
