// What the Qt backend does not have yet: status items, interface files, the
// control setters and text objects. Each answers "none" or "cannot", so the
// framework reports the missing piece (the comparison window says the
// interface file is not available; the recorder gets no status item) instead
// of failing to link. This file goes when the real ones arrive.
#include "JTK/platform/Controls.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/StatusBar.h"
#include "JTK/platform/Text.h"

namespace jtk::platform {

bool setImage(View&, std::shared_ptr<const imaging::Image>) { return false; }
std::shared_ptr<const imaging::Image> image(const View&) { return nullptr; }
bool setStringValue(View&, const std::string&) { return false; }
LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>&) {
    return {nullptr, "interface files are not available in this build of the Qt backend: " + name};
}
std::shared_ptr<StatusItem> statusItemWithLength(double) { return nullptr; }
std::optional<std::string> textObjectString(const Object&) { return std::nullopt; }

}  // namespace jtk::platform
