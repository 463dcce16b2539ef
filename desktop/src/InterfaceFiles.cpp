// Interface files: the desktop's controls built from a file's description.
#include "JTK/desktop/InterfaceFiles.h"

#include <vector>

#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/services/InterfaceDescription.h"
#include "render/FontSystem.h"

namespace jtk::desktop {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path>& addedFolders() {
    static std::vector<fs::path> folders;
    return folders;
}

class Builder {
public:
    explicit Builder(std::shared_ptr<platform::InterfaceOwner> owner) : owner_(std::move(owner)) {}

    std::shared_ptr<View> makeView(const services::ViewDescription& description) {
        std::shared_ptr<View> view;
        const auto& kind = description.kind;
        if (kind == "Box") {
            view = std::make_shared<Box>(description.frame, description.title);
        } else if (kind == "Label") {
            view = std::make_shared<Label>(description.frame, description.text);
        } else if (kind == "TextField") {
            view = std::make_shared<TextField>(description.frame, description.text);
        } else if (kind == "ImageView") {
            view = std::make_shared<ImageView>(description.frame);
        } else if (kind == "Button") {
            auto button = std::make_shared<Button>(description.frame, description.title);
            button->setKeyEquivalent(description.keyEquivalent);
            if (!description.action.empty()) {
                std::weak_ptr<platform::InterfaceOwner> owner = owner_;
                button->setAction([owner, action = description.action](Button& sender) {
                    if (auto target = owner.lock()) target->performAction(action, sender.sharedView());
                });
            }
            view = button;
        } else {
            view = std::make_shared<View>(description.frame);
        }
        if (!description.name.empty())
            view->addMethod("hbViewName", [name = description.name](platform::Object&, const platform::Value&) {
                return platform::Value(name);
            });
        if (!description.outlet.empty()) outlets_.emplace_back(description.outlet, view);
        addSubviews(*view, description.subviews);
        return view;
    }

    void addSubviews(View& parent, const std::vector<services::ViewDescription>& subviews) {
        for (const auto& subview : subviews) parent.addSubview(makeView(subview));
    }

    // Outlets are told once the whole window stands.
    void connectOutlets() {
        for (const auto& [outlet, view] : outlets_) owner_->connectOutlet(outlet, view);
    }

private:
    std::shared_ptr<platform::InterfaceOwner> owner_;
    std::vector<std::pair<std::string, std::shared_ptr<View>>> outlets_;
};

platform::LoadedInterface build(const services::ReadInterface& read, const std::shared_ptr<platform::InterfaceOwner>& owner) {
    if (!read.window) return {nullptr, read.error};
    const auto& description = *read.window;
    Builder builder(owner);
    platform::Rect contentRect = description.contentRect;
    auto content = std::make_shared<View>(platform::Rect{0, 0, contentRect.width(), contentRect.height()});
    builder.addSubviews(*content, description.subviews);
    auto window = Window::make(contentRect, description.title);
    window->setContentView(content);
    builder.connectOutlets();
    return {window, {}};
}

}  // namespace

void addInterfaceFolder(const fs::path& folder) { addedFolders().push_back(folder); }

platform::LoadedInterface loadInterfaceText(const std::string& text, const std::string& name,
                                            const std::shared_ptr<platform::InterfaceOwner>& owner) {
    if (!owner) return {nullptr, "interface file " + name + ": no owner to connect it to"};
    return build(services::parseInterfaceText(text, name), owner);
}

}  // namespace jtk::desktop

namespace jtk::platform {

LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>& owner) {
    if (!owner) return {nullptr, "interface file " + name + ": no owner to connect it to"};
    std::vector<std::filesystem::path> folders = desktop::addedFolders();
    if (auto resources = desktop::resourcesFolder()) folders.push_back(*resources);
    return desktop::build(services::readInterfaceFile(name, folders), owner);
}

}  // namespace jtk::platform
