// Placeholders for the menus, alerts, status items, interface files and
// control setters of the Qt backend, so that the core links and runs before
// they exist. Each answers "none" or "cannot". This file goes when the real
// ones arrive.
#include "JTK/platform/Alert.h"
#include "JTK/platform/Controls.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/StatusBar.h"
#include "JTK/platform/Text.h"
#include "QtWrappers.h"

namespace jtk::qt {

std::shared_ptr<platform::Menu> menuFor(QMenu*) { return nullptr; }
std::shared_ptr<platform::MenuItem> menuItemFor(QAction*) { return nullptr; }
std::shared_ptr<platform::Menu> menuBarFor(QMenuBar*) { return nullptr; }

}  // namespace jtk::qt

namespace jtk::platform {

namespace {

class NoAlert : public Alert {
public:
    void setMessageText(const std::string&) override {}
    void setInformativeText(const std::string&) override {}
    void addButtonWithTitle(const std::string&) override {}
    int runModal() override {
        systemLog("Alert: alerts are not available in this build of the Qt backend");
        return 1000;
    }
};

}  // namespace

std::unique_ptr<Alert> makeAlert() { return std::make_unique<NoAlert>(); }
bool setImage(View&, std::shared_ptr<const imaging::Image>) { return false; }
std::shared_ptr<const imaging::Image> image(const View&) { return nullptr; }
bool setStringValue(View&, const std::string&) { return false; }
LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>&) {
    return {nullptr, "interface files are not available in this build of the Qt backend: " + name};
}
std::shared_ptr<StatusItem> statusItemWithLength(double) { return nullptr; }
std::optional<std::string> textObjectString(const Object&) { return std::nullopt; }

}  // namespace jtk::platform
