// Interface files: a window and its views as JSON, loaded by name.
#include "JTK/desktop/InterfaceFiles.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <nlohmann/json.hpp>

#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/TextField.h"
#include "render/FontSystem.h"

namespace jtk::desktop {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

std::vector<fs::path>& addedFolders() {
    static std::vector<fs::path> folders;
    return folders;
}

// A malformed file: the message names where in the file the fault is.
struct InterfaceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

const json& member(const json& object, const char* key, const std::string& where) {
    if (!object.is_object() || !object.contains(key))
        throw InterfaceError(where + " has no \"" + key + "\"");
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
    if (!value.is_array() || value.size() != 4)
        throw InterfaceError(where + ": \"" + key + "\" is not four numbers [x, y, width, height]");
    for (const auto& number : value)
        if (!number.is_number()) throw InterfaceError(where + ": \"" + key + "\" is not four numbers [x, y, width, height]");
    return {value[0].get<double>(), value[1].get<double>(), value[2].get<double>(), value[3].get<double>()};
}

class Builder {
public:
    explicit Builder(std::shared_ptr<platform::InterfaceOwner> owner) : owner_(std::move(owner)) {}

    std::shared_ptr<View> makeView(const json& description, const std::string& where) {
        if (!description.is_object()) throw InterfaceError(where + " is not an object");
        std::string kind = text(description, "class", where);
        platform::Rect frame = rect(description, "frame", where);
        std::shared_ptr<View> view;
        if (kind == "View") {
            view = std::make_shared<View>(frame);
        } else if (kind == "Box") {
            view = std::make_shared<Box>(frame, text(description, "title", where));
        } else if (kind == "Label") {
            view = std::make_shared<Label>(frame, text(description, "text", where));
        } else if (kind == "TextField") {
            view = std::make_shared<TextField>(frame, text(description, "text", where));
        } else if (kind == "ImageView") {
            view = std::make_shared<ImageView>(frame);
        } else if (kind == "Button") {
            auto button = std::make_shared<Button>(frame, text(description, "title", where));
            button->setKeyEquivalent(text(description, "keyEquivalent", where));
            if (std::string action = text(description, "action", where); !action.empty()) {
                std::weak_ptr<platform::InterfaceOwner> owner = owner_;
                button->setAction([owner, action](Button& sender) {
                    if (auto target = owner.lock()) target->performAction(action, sender.sharedView());
                });
            }
            view = button;
        } else {
            throw InterfaceError(where + ": unknown class \"" + kind + "\"");
        }
        if (std::string name = text(description, "name", where); !name.empty())
            view->addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
        if (std::string outlet = text(description, "outlet", where); !outlet.empty()) outlets_.emplace_back(outlet, view);
        if (description.contains("subviews")) addSubviews(*view, description.at("subviews"), where);
        return view;
    }

    void addSubviews(View& parent, const json& list, const std::string& where) {
        if (!list.is_array()) throw InterfaceError(where + ": \"subviews\" is not a list");
        for (size_t i = 0; i < list.size(); ++i)
            parent.addSubview(makeView(list[i], where + " view " + std::to_string(i + 1)));
    }

    // Outlets are told once the whole window stands.
    void connectOutlets() {
        for (const auto& [outlet, view] : outlets_) owner_->connectOutlet(outlet, view);
    }

private:
    std::shared_ptr<platform::InterfaceOwner> owner_;
    std::vector<std::pair<std::string, std::shared_ptr<View>>> outlets_;
};

// The views are built before the window, so that a faulty file leaves no
// half-made window in the application's list.
std::shared_ptr<Window> buildWindow(const json& file, Builder& builder) {
    const json& description = member(file, "window", "the file");
    platform::Rect contentRect = rect(description, "contentRect", "the window");
    std::string title = text(description, "title", "the window");
    auto content = std::make_shared<View>(platform::Rect{0, 0, contentRect.width(), contentRect.height()});
    if (description.contains("subviews")) builder.addSubviews(*content, description.at("subviews"), "the window");
    auto window = Window::make(contentRect, title);
    window->setContentView(content);
    return window;
}

std::optional<fs::path> findInterfaceFile(const std::string& name, std::string& searched) {
    std::vector<fs::path> folders = addedFolders();
    if (auto resources = resourcesFolder()) folders.push_back(*resources);
    for (const auto& folder : folders) {
        searched += (searched.empty() ? "" : ", ") + folder.string();
        std::error_code error;
        if (fs::is_regular_file(folder / (name + ".json"), error)) return folder / (name + ".json");
    }
    return std::nullopt;
}

}  // namespace

void addInterfaceFolder(const fs::path& folder) { addedFolders().push_back(folder); }

platform::LoadedInterface loadInterfaceText(const std::string& text, const std::string& name,
                                            const std::shared_ptr<platform::InterfaceOwner>& owner) {
    if (!owner) return {nullptr, "interface file " + name + ": no owner to connect it to"};
    try {
        Builder builder(owner);
        auto window = buildWindow(json::parse(text), builder);
        builder.connectOutlets();
        return {window, {}};
    } catch (const json::exception& error) {
        return {nullptr, "interface file " + name + ": " + error.what()};
    } catch (const InterfaceError& error) {
        return {nullptr, "interface file " + name + ": " + error.what()};
    }
}

}  // namespace jtk::desktop

namespace jtk::platform {

LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>& owner) {
    std::string searched;
    auto file = desktop::findInterfaceFile(name, searched);
    if (!file) return {nullptr, "no interface file named " + name + " in " + (searched.empty() ? "any folder" : searched)};
    std::ifstream stream(*file, std::ios::binary);
    std::ostringstream contents;
    contents << stream.rdbuf();
    if (!stream) return {nullptr, "interface file " + file->string() + " cannot be read"};
    return desktop::loadInterfaceText(contents.str(), file->string(), owner);
}

}  // namespace jtk::platform
