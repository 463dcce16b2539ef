// The rules by which a search compares texts and classes with a view: text
// equality under Unicode canonical equivalence (case-sensitive, nothing
// ignored) and the type-name rule of the type searches.
#pragma once

#include <memory>
#include <string>

#include "JTK/JTKClass.h"
#include "JTK/platform/View.h"

namespace jtk {

// True when a and b hold the same characters under canonical equivalence: a
// precomposed letter equals the letter followed by its combining mark. Upper
// and lower case differ. Texts that are not valid UTF-8 compare byte by byte.
bool jtkTextEquals(const std::string& a, const std::string& b);

// True when the view's unqualified class name equals the class's name. A view
// of a subclass does not pass for its superclass. One main-thread step.
bool jtkPassesTypeRule(const std::shared_ptr<platform::View>& view, const JTKClass& type);

// The lookup rule for a view whose name the caller has read: the name, the
// element's lookup description, then the title, the type name and the value,
// each read only when the ones before did not match; a hidden view never
// matches. Runs on the main thread (the caller's step).
bool jtkViewMatchesLookup(platform::View& view, const std::string& name, const std::string& lookupDescription,
                          const std::string& lookup);

}  // namespace jtk
