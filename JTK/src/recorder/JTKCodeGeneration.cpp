#include "recorder/JTKCodeGeneration.h"

#include <cctype>

#include "JTK/JTKTestSuite.h"
#include "input/JTKKeyboard.h"

namespace jtk {

namespace {

using Arguments = std::vector<JTKStringConvertable>;

std::vector<std::string> splitAt(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at; (at = text.find(separator, start)) != std::string::npos; start = at + 1)
        pieces.push_back(text.substr(start, at - start));
    pieces.push_back(text.substr(start));
    return pieces;
}

std::string labelAt(const JTKSignature& signature, size_t position) {
    return position < signature.labels.size() ? signature.labels[position] : std::string{};
}

// Positions of the arguments that are not their type's default, in order.
std::vector<size_t> keptPositions(const Arguments& arguments) {
    std::vector<size_t> kept;
    for (size_t position = 0; position < arguments.size(); ++position)
        if (!isDefaultValue(arguments[position])) kept.push_back(position);
    return kept;
}

std::string join(const std::vector<std::string>& pieces, const std::string& separator) {
    std::string text;
    for (size_t i = 0; i < pieces.size(); ++i) text += (i ? separator : std::string{}) + pieces[i];
    return text;
}

// The key a code types, as typeKey("n", ...) names it; none for a code
// that no character of the key table types.
std::optional<std::string> keyOfCode(uint16_t code) {
    for (const auto& [key, keyCode] : JTKTestSuite::keyCodeMap())
        if (keyCode == code) return key;
    return std::nullopt;
}

std::string cppArgument(const JTKSignature& signature, size_t position, const JTKStringConvertable& value) {
    if (signature.name == "typeKey" && position == 0) {
        if (const auto* code = std::get_if<JTKKeyCode>(&value))
            if (auto key = keyOfCode(code->code)) return sourceLiteral(*key, JTKDialect::cpp);
    }
    return sourceLiteral(value, JTKDialect::cpp);
}

}  // namespace

std::string jtkShortcutKey(const std::string& keyEquivalent) {
    if (keyEquivalent.empty()) return {};
    auto lower = [](std::string text) {
        for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return text;
    };
    if (keyEquivalent.size() > 1)
        for (const auto& entry : JTKTestSuite::keyCodeMap())
            if (entry.first.size() > 1 && lower(entry.first) == lower(keyEquivalent)) return entry.first;
    unsigned char first = static_cast<unsigned char>(keyEquivalent.front());
    if (first == '"' || first == '\'' || first == '\\' || first < 0x20) return "\\";
    auto characters = jtkCharacters(keyEquivalent);
    return characters.empty() ? std::string{} : jtkLowercase(characters.front());
}

JTKSignature jtkSignatureTokens(const std::string& signature) {
    std::vector<std::string> tokens;
    for (const auto& colonPiece : splitAt(signature, ':'))
        for (const auto& openPiece : splitAt(colonPiece, '('))
            for (const auto& piece : splitAt(openPiece, ')'))
                if (!piece.empty()) tokens.push_back(piece);
    if (tokens.empty()) return {};
    return {tokens.front(), {tokens.begin() + 1, tokens.end()}};
}

std::string swiftCallText(const std::string& signatureText, const Arguments& arguments) {
    JTKSignature signature = jtkSignatureTokens(signatureText);
    // Joined rather than trimmed afterwards, so that no text inside a literal
    // ever looks like a separator to be removed.
    std::vector<std::string> pieces;
    for (size_t position : keptPositions(arguments)) {
        std::string label = labelAt(signature, position);
        std::string prefix = label.empty() || label == "_" ? "" : label + ": ";
        pieces.push_back(prefix + sourceLiteral(arguments[position], JTKDialect::swift));
    }
    return signature.name + "(" + join(pieces, ", ") + ")";
}

std::string objcCallText(const std::string& signatureText, const Arguments& arguments) {
    JTKSignature signature = jtkSignatureTokens(signatureText);
    std::string text = std::string("[") + jtkReceiverPlaceholder + " " + signature.name;
    for (size_t position : keptPositions(arguments)) {
        std::string label = labelAt(signature, position);
        if (position == 0 && label != "_") {
            // clickWithOffset:, clickMenuItemWithTitle:
            std::string word = label;
            for (size_t i = 0; i < word.size(); ++i)
                word[i] = static_cast<char>(i == 0 ? std::toupper(static_cast<unsigned char>(word[i]))
                                                   : std::tolower(static_cast<unsigned char>(word[i])));
            label = "With" + word;
        }
        if (label == "_") label.clear();
        text += label + ": " + sourceLiteral(arguments[position], JTKDialect::objectiveC) + " ";
    }
    if (text.ends_with(' ')) text.pop_back();
    return text + "];";
}

std::string cppCallText(const std::string& signatureText, const Arguments& arguments) {
    JTKSignature signature = jtkSignatureTokens(signatureText);
    auto kept = keptPositions(arguments);
    std::vector<std::string> pieces;
    if (signature.name == "click") {
        // The click's options by name: click({.offset = {3.0, -2.0}, .doubleClick = true}).
        for (size_t position : kept)
            pieces.push_back("." + labelAt(signature, position) + " = " + cppArgument(signature, position, arguments[position]));
        return pieces.empty() ? "click()" : "click({" + join(pieces, ", ") + "})";
    }
    // Positional: the first argument always (none of these calls has a
    // default for it), then every argument up to the last one kept.
    size_t count = arguments.empty() ? 0 : (kept.empty() ? 1 : kept.back() + 1);
    for (size_t position = 0; position < count; ++position)
        pieces.push_back(cppArgument(signature, position, arguments[position]));
    return signature.name + "(" + join(pieces, ", ") + ")";
}

std::string jtkCallText(JTKDialect dialect, const std::string& signature, const Arguments& arguments) {
    switch (dialect) {
        case JTKDialect::swift: return swiftCallText(signature, arguments);
        case JTKDialect::objectiveC: return objcCallText(signature, arguments);
        case JTKDialect::cpp: return cppCallText(signature, arguments);
    }
    return {};
}

std::string jtkReferenceText(const JTKElementReference& reference, JTKDialect dialect) {
    std::string lookup = sourceLiteral(reference.lookup, dialect);
    std::string index = reference.index ? std::to_string(*reference.index) : std::string{};
    switch (dialect) {
        case JTKDialect::swift:
            return reference.index ? "elements(" + lookup + ")[" + index + "]" : "element(" + lookup + ")";
        case JTKDialect::objectiveC:
            return reference.index ? "[self elements:" + lookup + "][" + index + "]" : "[self element:" + lookup + "]";
        case JTKDialect::cpp: {
            if (reference.className) lookup += ", jtk::JTKClass{" + sourceLiteral(*reference.className, dialect) + "}";
            // at(): a replay that finds fewer elements stops with an exception, not out of bounds.
            return reference.index ? "elements(" + lookup + ").at(" + index + ")" : "element(" + lookup + ")";
        }
    }
    return {};
}

std::string jtkStatement(JTKDialect dialect, const std::string& callText, const std::optional<std::string>& reference,
                         JTKChaining chaining) {
    if (!reference) chaining = JTKChaining::none;
    switch (dialect) {
        case JTKDialect::swift:
            if (!reference) return callText;
            return (chaining == JTKChaining::none ? *reference : std::string{}) + "." + callText;
        case JTKDialect::objectiveC: {
            // Only the receiver at the front is replaced: a literal may hold the placeholder's text.
            std::string prefix = std::string("[") + jtkReceiverPlaceholder;
            std::string rest = callText.starts_with(prefix) ? callText.substr(prefix.size()) : callText;
            if (!reference) return "[self" + rest;
            return chaining == JTKChaining::none ? "[" + *reference + rest : rest;
        }
        case JTKDialect::cpp:
            if (!reference) return callText + ";";
            if (chaining == JTKChaining::ontoElement) return "." + callText + ";";
            // The line's own statement ends, and this one follows it on the same line.
            if (chaining == JTKChaining::ontoOtherCall) return "; " + *reference + "." + callText + ";";
            return *reference + "." + callText + ";";
    }
    return {};
}

}  // namespace jtk
