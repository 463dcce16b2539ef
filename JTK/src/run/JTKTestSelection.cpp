#include "run/JTKTestSelection.h"

#include <map>

namespace jtk {

bool jtkNameMatchesPattern(std::string_view name, std::string_view pattern) {
    // Iterative wildcard match: on a mismatch after a '*', the star takes one
    // more character and the rest is tried again.
    size_t n = 0, p = 0, starPattern = std::string_view::npos, starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++n;
            ++p;
        } else if (p < pattern.size() && pattern[p] == '*') {
            starPattern = p++;
            starName = n;
        } else if (starPattern != std::string_view::npos) {
            p = starPattern + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

namespace {

bool anyPatternMatches(std::string_view patterns, std::string_view name) {
    size_t start = 0;
    while (start <= patterns.size()) {
        size_t end = patterns.find(':', start);
        if (end == std::string_view::npos) end = patterns.size();
        auto pattern = patterns.substr(start, end - start);
        if (!pattern.empty() && jtkNameMatchesPattern(name, pattern)) return true;
        start = end + 1;
    }
    return false;
}

}  // namespace

bool jtkFilterChooses(std::string_view filter, std::string_view name) {
    auto dash = filter.find('-');
    auto positive = filter.substr(0, dash);
    auto negative = dash == std::string_view::npos ? std::string_view() : filter.substr(dash + 1);
    bool chosen = positive.empty() || anyPatternMatches(positive, name);
    return chosen && !anyPatternMatches(negative, name);
}

JTKTestSelection jtkSelectTests(const JTKMethodList& ordered, std::string_view filter, int shardIndex, int shardCount) {
    JTKTestSelection selection;
    JTKMethodList filtered;
    for (const auto& test : ordered)
        if (jtkFilterChooses(filter, test.name)) filtered.push_back(test);
    if (ordered.empty()) {
        selection.refusal = "JTK: the application has no tests (no JTK_TEST was linked in)";
        return selection;
    }
    if (filtered.empty()) {
        selection.refusal = "JTK: no test matches the filter \"" + std::string(filter) + "\" (" +
                            std::to_string(ordered.size()) + " tests; --jtk-list lists them)";
        return selection;
    }
    for (size_t i = 0; i < filtered.size(); ++i)
        if (static_cast<int>(i % static_cast<size_t>(shardCount)) == shardIndex) selection.tests.push_back(filtered[i]);
    if (selection.tests.empty())
        selection.emptyNote = "JTK: shard " + std::to_string(shardIndex) + " of " + std::to_string(shardCount) +
                              " holds no test (" + std::to_string(filtered.size()) + " chosen tests)";
    return selection;
}

std::vector<std::string> jtkDuplicateTestNames(const JTKMethodList& methods) {
    std::map<std::string, std::vector<const JTKClassMethod*>> byName;
    std::vector<std::string> order;
    for (const auto& method : methods) {
        if (!std::string_view(method.name).starts_with("test")) continue;
        auto& places = byName[method.name];
        if (places.empty()) order.push_back(method.name);
        places.push_back(&method);
    }
    std::vector<std::string> lines;
    for (const auto& name : order) {
        const auto& places = byName[name];
        if (places.size() < 2) continue;
        std::string line = "JTK: " + std::to_string(places.size()) + " tests are named " + name + ":";
        for (size_t i = 0; i < places.size(); ++i) {
            line += i == 0 ? " " : (i + 1 == places.size() ? " and " : ", ");
            line += places[i]->file + ":" + std::to_string(places[i]->line);
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace jtk
