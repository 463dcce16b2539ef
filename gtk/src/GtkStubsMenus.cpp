// Placeholders for the menus half of the backend until menus, alerts, the
// status item, text objects and interface files land (their owner deletes
// this file): nothing of them exists yet.
#include "GtkMenus.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/StatusBar.h"
#include "JTK/platform/Text.h"

namespace jtk::gtk {

std::shared_ptr<platform::Menu> mainMenuOf(GtkWidget*) { return nullptr; }

}  // namespace jtk::gtk

namespace jtk::platform {

namespace {

class AbsentAlert : public Alert {
public:
    void setMessageText(const std::string& text) override { message_ = text; }
    void setInformativeText(const std::string&) override {}
    void addButtonWithTitle(const std::string&) override {}
    int runModal() override {
        systemLog("JTK GTK: alerts are not available yet; \"" + message_ + "\" answered with its first button");
        return 1000;
    }

private:
    std::string message_;
};

}  // namespace

std::shared_ptr<StatusItem> statusItemWithLength(double) { return nullptr; }
std::unique_ptr<Alert> makeAlert() { return std::make_unique<AbsentAlert>(); }
std::optional<std::string> textObjectString(const Object&) { return std::nullopt; }
LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>&) {
    return {nullptr, "the GTK backend cannot load interface files yet (" + name + ")"};
}

}  // namespace jtk::platform
