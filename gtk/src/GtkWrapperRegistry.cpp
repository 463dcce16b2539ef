#include "GtkWrapperRegistry.h"

#include <array>
#include <unordered_map>

namespace jtk::gtk {

namespace {

struct Entry {
    std::shared_ptr<WidgetHandle> handle;
    std::array<std::shared_ptr<platform::Object>, 5> wrappers;
};

std::unordered_map<GObject*, Entry>& registry() {
    // Never destroyed: GTK may still dispose of widgets while the process ends.
    static auto* entries = new std::unordered_map<GObject*, Entry>;
    return *entries;
}

// GTK disposes of the object: its wrappers see it gone, and a later object
// at the same address starts without wrappers.
void objectGone(gpointer, GObject* object) {
    auto found = registry().find(object);
    if (found == registry().end()) return;
    found->second.handle->object = nullptr;
    auto wrappers = std::move(found->second.wrappers);  // released after the entry is gone
    registry().erase(found);
}

}  // namespace

std::shared_ptr<platform::Object> WrapperRegistry::wrapperFor(
    GObject* object, WrapperRole role,
    const std::function<std::shared_ptr<platform::Object>(std::shared_ptr<WidgetHandle>)>& make) {
    if (!object) return nullptr;
    auto& entries = registry();
    auto found = entries.find(object);
    if (found == entries.end()) {
        found = entries.emplace(object, Entry{std::make_shared<WidgetHandle>(WidgetHandle{object}), {}}).first;
        g_object_weak_ref(object, objectGone, nullptr);
    }
    auto& slot = found->second.wrappers[static_cast<size_t>(role)];
    if (slot) return slot;
    // Made before the slot is filled: making a wrapper may register others
    // (and so move the entries), so the slot is looked up again.
    auto handle = found->second.handle;
    auto made = make(handle);
    auto& again = entries.at(object).wrappers[static_cast<size_t>(role)];
    if (!again) again = std::move(made);
    return again;
}

std::shared_ptr<platform::Object> WrapperRegistry::existingWrapper(GObject* object, WrapperRole role) {
    auto found = registry().find(object);
    return found == registry().end() ? nullptr : found->second.wrappers[static_cast<size_t>(role)];
}

size_t WrapperRegistry::objectCount() { return registry().size(); }

}  // namespace jtk::gtk
