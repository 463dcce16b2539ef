#include "QtWrapperRegistry.h"

#include <QObject>
#include <array>
#include <unordered_map>

namespace jtk::qt {

namespace {

using Wrappers = std::array<std::shared_ptr<platform::Object>, 5>;

std::unordered_map<const QObject*, Wrappers>& registry() {
    // Never destroyed: Qt objects may still be destroyed while the process ends.
    static auto* wrappers = new std::unordered_map<const QObject*, Wrappers>;
    return *wrappers;
}

}  // namespace

std::shared_ptr<platform::Object> WrapperRegistry::wrapperFor(
    QObject* object, WrapperRole role, const std::function<std::shared_ptr<platform::Object>()>& make) {
    if (!object) return nullptr;
    if (auto existing = existingWrapper(object, role)) return existing;
    // Made before the entry is looked up: making a wrapper may register others.
    auto made = make();
    auto& wrappers = registry();
    auto found = wrappers.find(object);
    if (found == wrappers.end()) {
        found = wrappers.emplace(object, Wrappers{}).first;
        // A later object at the same address starts without wrappers.
        QObject::connect(object, &QObject::destroyed, [object] { registry().erase(object); });
    }
    auto& slot = found->second[static_cast<size_t>(role)];
    if (!slot) slot = std::move(made);
    return slot;
}

std::shared_ptr<platform::Object> WrapperRegistry::existingWrapper(const QObject* object, WrapperRole role) {
    auto found = registry().find(object);
    return found == registry().end() ? nullptr : found->second[static_cast<size_t>(role)];
}

size_t WrapperRegistry::objectCount() { return registry().size(); }

}  // namespace jtk::qt
