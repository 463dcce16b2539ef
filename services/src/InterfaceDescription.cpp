// Interface files: JSON read and checked into descriptions. A faulty file
// gives no description and one line that says where the fault is.
#include "JTK/services/InterfaceDescription.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace jtk::services {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

struct InterfaceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

const json& member(const json& object, const char* key, const std::string& where) {
    if (!object.is_object() || !object.contains(key)) throw InterfaceError(where + " has no \"" + key + "\"");
    return object.at(key);
}

std::string text(const json& object, const char* key, const std::string& where) {
    if (!object.contains(key)) return {};
    const json& value = object.at(key);
    if (!value.is_string()) throw InterfaceError(where + ": \"" + key + "\" is not a text");
    return value.get<std::string>();
}

platform::Rect rect(const json& object, const char* key, const std::string& where) {
    const json& value = member(object, key, where);
    bool fourNumbers = value.is_array() && value.size() == 4;
    for (size_t i = 0; fourNumbers && i < 4; ++i) fourNumbers = value[i].is_number();
    if (!fourNumbers) throw InterfaceError(where + ": \"" + key + "\" is not four numbers [x, y, width, height]");
    return {value[0].get<double>(), value[1].get<double>(), value[2].get<double>(), value[3].get<double>()};
}

bool knownKind(const std::string& kind) {
    for (const char* known : {"View", "Box", "Label", "TextField", "ImageView", "Button"})
        if (kind == known) return true;
    return false;
}

std::vector<ViewDescription> subviews(const json& parent, const std::string& where);

ViewDescription view(const json& description, const std::string& where) {
    if (!description.is_object()) throw InterfaceError(where + " is not an object");
    ViewDescription view;
    view.kind = text(description, "class", where);
    view.frame = rect(description, "frame", where);
    if (!knownKind(view.kind)) throw InterfaceError(where + ": unknown class \"" + view.kind + "\"");
    view.title = text(description, "title", where);
    view.text = text(description, "text", where);
    view.name = text(description, "name", where);
    view.outlet = text(description, "outlet", where);
    view.action = text(description, "action", where);
    view.keyEquivalent = text(description, "keyEquivalent", where);
    view.subviews = subviews(description, where);
    return view;
}

std::vector<ViewDescription> subviews(const json& parent, const std::string& where) {
    std::vector<ViewDescription> views;
    if (!parent.contains("subviews")) return views;
    const json& list = parent.at("subviews");
    if (!list.is_array()) throw InterfaceError(where + ": \"subviews\" is not a list");
    for (size_t i = 0; i < list.size(); ++i) views.push_back(view(list[i], where + " view " + std::to_string(i + 1)));
    return views;
}

}  // namespace

ReadInterface parseInterfaceText(const std::string& text, const std::string& name) {
    try {
        const json file = json::parse(text);
        const json& description = member(file, "window", "the file");
        WindowDescription window;
        window.contentRect = rect(description, "contentRect", "the window");
        window.title = services::text(description, "title", "the window");
        window.subviews = subviews(description, "the window");
        return {std::move(window), {}};
    } catch (const json::exception& error) {
        return {std::nullopt, "interface file " + name + ": " + error.what()};
    } catch (const InterfaceError& error) {
        return {std::nullopt, "interface file " + name + ": " + error.what()};
    }
}

ReadInterface readInterfaceFile(const std::string& name, const std::vector<fs::path>& folders) {
    std::string searched;
    for (const auto& folder : folders) {
        searched += (searched.empty() ? "" : ", ") + folder.string();
        fs::path file = folder / (name + ".json");
        std::error_code error;
        if (!fs::is_regular_file(file, error)) continue;
        std::ifstream stream(file, std::ios::binary);
        std::ostringstream contents;
        contents << stream.rdbuf();
        if (!stream) return {std::nullopt, "interface file " + file.string() + " cannot be read"};
        return parseInterfaceText(contents.str(), file.string());
    }
    return {std::nullopt, "no interface file named " + name + " in " + (searched.empty() ? "any folder" : searched)};
}

}  // namespace jtk::services
