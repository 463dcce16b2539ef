// A class as the type searches name it: its unqualified runtime class name.
#pragma once

#include <cxxabi.h>

#include <cstdlib>
#include <string>
#include <typeinfo>

#include "JTK/platform/Object.h"

namespace jtk {

struct JTKClass {
    std::string name;
    bool operator==(const JTKClass&) const = default;
};

// jtkClass<Button>() names the class Button, whatever its namespace.
template <class T>
JTKClass jtkClass() {
    int status = 0;
    char* demangled = abi::__cxa_demangle(typeid(T).name(), nullptr, nullptr, &status);
    std::string name = status == 0 && demangled ? demangled : typeid(T).name();
    std::free(demangled);
    return JTKClass{platform::unqualifiedTypeName(name)};
}

}  // namespace jtk
