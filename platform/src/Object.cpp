#include "JTK/platform/Object.h"

#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <typeinfo>
#include <unordered_map>

namespace jtk::platform {

namespace {

struct ClassMethodTable {
    std::mutex mutex;
    std::map<std::string, std::map<std::string, Object::Method>> methods;
};

ClassMethodTable& classMethodTable() {
    static ClassMethodTable table;
    return table;
}

}  // namespace

std::string unqualifiedTypeName(const std::string& demangled) {
    // Drop template arguments, then every namespace or enclosing class.
    std::string name = demangled.substr(0, demangled.find('<'));
    auto colon = name.rfind("::");
    return colon == std::string::npos ? name : name.substr(colon + 2);
}

std::string Object::className() const {
    // A type's name never changes, and demangling allocates and parses, so
    // each thread keeps the names it has worked out. This remembers facts
    // about C++ types only, never anything about an object's state.
    thread_local std::unordered_map<const std::type_info*, std::string> names;
    const std::type_info& type = typeid(*this);
    auto known = names.find(&type);
    if (known != names.end()) return known->second;
    const char* mangled = type.name();
    int status = 0;
    char* demangled = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    std::string name = status == 0 && demangled ? demangled : mangled;
    std::free(demangled);
    return names.emplace(&type, unqualifiedTypeName(name)).first->second;
}

const Object::Method* Object::findMethod(const std::string& selector) const {
    if (auto it = methods_.find(selector); it != methods_.end()) return &it->second;
    auto& table = classMethodTable();
    std::lock_guard lock(table.mutex);
    auto cls = table.methods.find(className());
    if (cls == table.methods.end()) return nullptr;
    auto it = cls->second.find(selector);
    return it == cls->second.end() ? nullptr : &it->second;
}

bool Object::respondsToSelector(const std::string& selector) const { return findMethod(selector) != nullptr; }

Value Object::performSelector(const std::string& selector, const Value& argument) {
    const Method* method = findMethod(selector);
    if (!method) return {};
    Method copy = *method;  // the method may replace itself while it runs
    return copy(*this, argument);
}

std::string Object::description() const {
    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
    return "<" + className() + ": " + address + ">";
}

void Object::addMethod(const std::string& selector, Method method) { methods_[selector] = std::move(method); }

void Object::addClassMethod(const std::string& className, const std::string& selector, Method method) {
    auto& table = classMethodTable();
    std::lock_guard lock(table.mutex);
    table.methods[className][selector] = std::move(method);
}

}  // namespace jtk::platform
