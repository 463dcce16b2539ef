// The test extension: class methods of JTKTestSuite added by the application's
// test code with the macros below, in declaration order (file, then line).
//
//   JTK_PROVIDER(jtkTestDataPath) { return "/path/to/data"; }
//   JTK_METHOD(jtkSetup) { ... }
//   JTK_TEST(testLogin) { JTKTestSuite::element("Login").click(); }
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Value.h"

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
    // Removes every method registered from file (for tests that build their own lists).
    static void removeFile(const std::string& file);

    struct Registrar {
        Registrar(const char* name, std::function<platform::Value()> invoke, const char* file, int line) {
            JTKRegistry::add({name, std::move(invoke), file, line});
        }
    };
};

#define JTK_INTERNAL_CONCAT2(a, b) a##b
#define JTK_INTERNAL_CONCAT(a, b) JTK_INTERNAL_CONCAT2(a, b)

// A class method with a result (a configuration provider).
#define JTK_PROVIDER(name)                                                                                  \
    static platform::Value jtkMethod_##name();                                                             \
    static JTKRegistry::Registrar JTK_INTERNAL_CONCAT(jtkRegistrar_##name##_, __LINE__)(                    \
        #name, [] { return jtkMethod_##name(); }, __FILE__, __LINE__);                                    \
    static platform::Value jtkMethod_##name()

// A class method without a result (a test, jtkSetup, tearDown).
#define JTK_METHOD(name)                                                                                    \
    static void jtkMethod_##name();                                                                        \
    static JTKRegistry::Registrar JTK_INTERNAL_CONCAT(jtkRegistrar_##name##_, __LINE__)(                    \
        #name,                                                                                             \
        [] {                                                                                               \
            jtkMethod_##name();                                                                            \
            return platform::Value();                                                                      \
        },                                                                                                 \
        __FILE__, __LINE__);                                                                               \
    static void jtkMethod_##name()

#define JTK_TEST(name) JTK_METHOD(name)
