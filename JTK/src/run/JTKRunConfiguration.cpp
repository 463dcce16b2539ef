// The test extension: the registry of its class methods and how the driver
// reads them (providers by name, merged options, test order, tags).
#include "run/JTKRunConfiguration.h"

#include <algorithm>
#include <mutex>

#include "JTK/JTKRegistry.h"
#include "run/JTKConsole.h"

namespace jtk {

// The registry of the test extension's class methods. Registrars run during
// static initialisation, so the storage is a function-local static.

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

const JTKClassMethod* jtkFirstMethodWithPrefix(const JTKMethodList& methods, std::string_view prefix) {
    for (const auto& method : methods) {
        if (std::string_view(method.name).starts_with(prefix)) return &method;
    }
    return nullptr;
}

const JTKClassMethod* jtkMethodNamed(const JTKMethodList& methods, std::string_view name) {
    for (const auto& method : methods) {
        if (method.name == name) return &method;
    }
    return nullptr;
}

std::optional<std::string> jtkTextProvider(const JTKMethodList& methods, std::string_view prefix) {
    const auto* provider = jtkFirstMethodWithPrefix(methods, prefix);
    if (!provider || !provider->invoke) return std::nullopt;
    auto result = provider->invoke();
    if (const auto* text = result.text()) return *text;
    return std::nullopt;
}

std::vector<std::string> jtkTextListProvider(const JTKMethodList& methods, std::string_view prefix) {
    const auto* provider = jtkFirstMethodWithPrefix(methods, prefix);
    if (!provider || !provider->invoke) return {};
    auto result = provider->invoke();
    const auto* list = result.list();
    if (!list) return {};
    std::vector<std::string> texts;
    for (const auto& item : *list) {
        const auto* text = item.text();
        if (!text) return {};  // a list of another element type is a result of another type
        texts.push_back(*text);
    }
    return texts;
}

std::optional<JTKTestOptions> jtkTestOptionsFromValue(const platform::Value& value,
                                                     std::vector<std::string>* unknownOptions) {
    const auto* tests = value.dictionary();
    if (!tests) return std::nullopt;
    JTKTestOptions options;
    for (const auto& [name, testOptions] : *tests) {
        const auto* testName = name.text();
        const auto* entries = testOptions.dictionary();
        if (!testName || !entries) return std::nullopt;
        std::map<JTKTestOption, platform::Value> converted;
        for (const auto& [key, optionValue] : *entries) {
            auto raw = key.integer();
            auto option = raw ? makeTestOption(*raw) : std::nullopt;
            if (!option) {
                if (unknownOptions) unknownOptions->push_back(key.debugText() + " of " + *testName);
                continue;
            }
            converted[*option] = optionValue;
        }
        options[*testName] = std::move(converted);
    }
    return options;
}

JTKTestOptions jtkMergeTestOptions(const JTKMethodList& methods) {
    JTKTestOptions merged;
    for (const auto& method : methods) {
        if (method.name.find("jtkTestOptions") == std::string::npos || !method.invoke) continue;
        std::vector<std::string> unknown;
        auto options = jtkTestOptionsFromValue(method.invoke(), &unknown).value_or(JTKTestOptions{});
        for (const auto& option : unknown) jtkPrintLine("Ignoring unknown option " + option + " in " + method.name);
        for (auto& [name, testOptions] : options) merged[name] = std::move(testOptions);
    }
    return merged;
}

int64_t jtkTestOrder(const JTKTestOptions& options, const std::string& testName) {
    auto test = options.find(testName);
    if (test == options.end()) return 0;
    auto order = test->second.find(JTKTestOption::order);
    if (order == test->second.end()) return 0;
    return order->second.integer().value_or(0);
}

JTKMethodList jtkOrderedTests(const JTKMethodList& methods, const JTKTestOptions& options) {
    JTKMethodList tests;
    for (const auto& method : methods) {
        if (method.name.starts_with("test")) tests.push_back(method);
    }
    std::stable_sort(tests.begin(), tests.end(), [&](const JTKClassMethod& a, const JTKClassMethod& b) {
        return jtkTestOrder(options, a.name) < jtkTestOrder(options, b.name);
    });
    return tests;
}

std::string jtkReplaceAll(std::string text, std::string_view what, std::string_view with) {
    if (what.empty()) return text;
    size_t position = 0;
    while ((position = text.find(what, position)) != std::string::npos) {
        text.replace(position, what.size(), with);
        position += with.size();
    }
    return text;
}

std::string jtkTestTag(const std::string& testName) { return jtkReplaceAll(testName, "test", ""); }

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    while (true) {
        auto end = text.find(separator, start);
        pieces.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) return pieces;
        start = end + 1;
    }
}

}  // namespace

std::string jtkVersionTag(const std::string& versionText) {
    std::vector<std::string> pieces = split(versionText, '(');
    std::erase_if(pieces, [](const std::string& piece) { return piece.empty(); });
    if (pieces.empty()) return "unknown";
    auto numbers = split(jtkReplaceAll(pieces.front(), "Version ", ""), '.');
    numbers.pop_back();
    std::string tag;
    for (const auto& number : numbers) tag += number;
    return tag;
}

}  // namespace jtk
