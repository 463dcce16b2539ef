// The test extension: class methods of JTKTestSuite added by the application's
// test code with the macros below, kept in declaration order (file, then line).
//
//   JTK_PROVIDER(jtkTestDataPath) { return "/path/to/data"; }
//   JTK_METHOD(jtkSetup) { copyTestUserDefaultsToPrefs(); }
//   JTK_TEST(testLogin) { element("Login").click(); }
//
// A body is a class method of a class derived from JTKTestSuite, so it calls
// the suite's operations unqualified: element(...), typeText(...), appWindow(...).
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Value.h"

namespace jtk {

struct JTKClassMethod {
    std::string name;
    std::function<platform::Value()> invoke;  // a method without a result returns none
    std::string file;
    int line = 0;
};

class JTKRegistry {
public:
    // Every registered class method, ordered by file and then line.
    static std::vector<JTKClassMethod> methods();
    static void add(JTKClassMethod method);

    struct Registrar {
        Registrar(const char* name, std::function<platform::Value()> invoke, const char* file, int line) {
            JTKRegistry::add({name, std::move(invoke), file, line});
        }
    };
};

namespace detail {
constexpr bool isTestName(std::string_view name) { return name.starts_with("test"); }
}  // namespace detail

}  // namespace jtk

#define JTK_INTERNAL_CONCAT2(a, b) a##b
#define JTK_INTERNAL_CONCAT(a, b) JTK_INTERNAL_CONCAT2(a, b)

// A class method named name whose body follows the macro. Result is the
// body's result type; call turns a call of the body into a platform::Value.
#define JTK_INTERNAL_CLASS_METHOD(name, Result, call)                                                     \
    namespace {                                                                                           \
    struct JTKClassMethod_##name : ::jtk::JTKTestSuite {                                                  \
        static Result body();                                                                             \
    };                                                                                                    \
    ::jtk::JTKRegistry::Registrar JTK_INTERNAL_CONCAT(jtkRegistrar_##name##_, __LINE__)(                 \
        #name, [] { call; }, __FILE__, __LINE__);                                                         \
    }                                                                                                     \
    Result JTKClassMethod_##name::body()

// A class method with a result (a configuration provider).
#define JTK_PROVIDER(name) \
    JTK_INTERNAL_CLASS_METHOD(name, ::jtk::platform::Value, return JTKClassMethod_##name::body())

// A class method without a result (jtkSetup, tearDown).
#define JTK_METHOD(name) \
    JTK_INTERNAL_CLASS_METHOD(name, void, JTKClassMethod_##name::body(); return ::jtk::platform::Value())

// A test. The run finds tests by the prefix "test", so any other name is an error here.
#define JTK_TEST(name)                                                                                    \
    static_assert(::jtk::detail::isTestName(#name),                                                       \
                  "JTK_TEST(" #name "): a test's name must begin with \"test\", or the run never finds it"); \
    JTK_METHOD(name)
