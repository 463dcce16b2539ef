// The registry of the test extension's class methods. Registrars run during
// static initialisation, so the storage is a function-local static.
#include "JTK/JTKRegistry.h"
#include "run/JTKRunConfiguration.h"

#include <algorithm>
#include <mutex>

namespace jtk {

namespace {

struct Storage {
    std::mutex mutex;
    std::vector<JTKClassMethod> methods;  // kept ordered by file, then line
};

Storage& storage() {
    static Storage instance;
    return instance;
}

}  // namespace

std::vector<JTKClassMethod> JTKRegistry::methods() {
    auto& store = storage();
    std::lock_guard lock(store.mutex);
    return store.methods;
}

void JTKRegistry::add(JTKClassMethod method) {
    auto& store = storage();
    std::lock_guard lock(store.mutex);
    // After every method of an earlier or equal position: two methods on one
    // line (a macro that expands to several) keep their registration order.
    auto position = std::upper_bound(store.methods.begin(), store.methods.end(), method,
                                     [](const JTKClassMethod& a, const JTKClassMethod& b) {
                                         if (a.file != b.file) return a.file < b.file;
                                         return a.line < b.line;
                                     });
    store.methods.insert(position, std::move(method));
}

void removeRegisteredMethods(const std::string& file) {
    auto& store = storage();
    std::lock_guard lock(store.mutex);
    std::erase_if(store.methods, [&](const JTKClassMethod& method) { return method.file == file; });
}

}  // namespace jtk
