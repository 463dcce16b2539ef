// From a recorded action to one source statement: the call text built from
// the action's signature and the arguments that differ from their defaults,
// the text that names the target element, and the statement that puts them
// together, in each dialect.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "JTK/JTKStringConvertable.h"
#include "JTK/platform/Geometry.h"
#include "recorder/JTKSourceLiteral.h"

namespace jtk {

// "click(offset:modifierFlags:)" gives the name click and the labels offset
// and modifierFlags; "_" stands for an unlabelled parameter.
struct JTKSignature {
    std::string name;
    std::vector<std::string> labels;
};
JTKSignature jtkSignatureTokens(const std::string& signature);

// The key of the key table a menu shortcut is typed with: a key named in
// full ("F5", whatever its case: Qt writes "f5"), else the shortcut's first
// character in lower case; a quote, backslash or control character reads as
// the backslash of its escape (which the table does not have).
std::string jtkShortcutKey(const std::string& keyEquivalent);

// The receiver of an Objective-C call text, replaced when the statement is built.
inline constexpr const char* jtkReceiverPlaceholder = "__element__";

std::string swiftCallText(const std::string& signature, const std::vector<JTKStringConvertable>& arguments);
std::string objcCallText(const std::string& signature, const std::vector<JTKStringConvertable>& arguments);
std::string cppCallText(const std::string& signature, const std::vector<JTKStringConvertable>& arguments);
std::string jtkCallText(JTKDialect dialect, const std::string& signature,
                        const std::vector<JTKStringConvertable>& arguments);

// How a statement names its element: by a lookup text alone when that finds
// exactly the element, else by the lookup text and a position in its results.
struct JTKElementReference {
    std::string lookup;
    std::optional<size_t> index;
    // The element's centre less the centre of the element the lookup names
    // (a named ancestor); zero when it names the element itself.
    platform::Point centreShift{};
    // The class the search is narrowed to (C++ lookups by title):
    // element("7", jtk::JTKClass{"Button"}).
    std::optional<std::string> className = std::nullopt;
    bool operator==(const JTKElementReference&) const = default;
};
std::string jtkReferenceText(const JTKElementReference& reference, JTKDialect dialect);

// What the statement continues, when it is chained onto the previous line.
enum class JTKChaining {
    none,
    // The previous call returns the element (a click): the call is appended to it.
    ontoElement,
    // The previous call returns nothing (C++ drag and clickMenuItem, or a
    // keyboard call): C++ starts a statement of its own on the same line.
    ontoOtherCall,
};

// The statement for a call text; reference is none for the suite-level
// actions (typeText, typeKey), which are never chained.
std::string jtkStatement(JTKDialect dialect, const std::string& callText,
                         const std::optional<std::string>& reference, JTKChaining chaining);

}  // namespace jtk
