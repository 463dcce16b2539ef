// Per-test options, typed. An options provider returns a table of test names
// and their options; the run reads it exactly as it reads a dictionary keyed
// by the options' raw values.
//
//   JTK_PROVIDER(jtkTestOptionsOrder) {
//       return jtk::testOptions({{"testLaunch", {.order = -2}},
//                                {"testSettings", {.skipScreenshots = true}}});
//   }
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

#include "JTK/JTKTestOption.h"
#include "JTK/platform/Value.h"

namespace jtk {

struct JTKOptions {
    // Tests run in ascending order (0 for tests without one); ties keep declaration order.
    std::optional<int64_t> order = std::nullopt;
    // No screenshots are taken after the test.
    std::optional<bool> skipScreenshots = std::nullopt;

    // The dictionary of option raw values to values.
    platform::Value value() const {
        platform::ValueDictionary options;
        if (skipScreenshots)
            options.emplace_back(static_cast<int64_t>(JTKTestOption::skipScreenshots), *skipScreenshots);
        if (order) options.emplace_back(static_cast<int64_t>(JTKTestOption::order), *order);
        return options;
    }
};

// The result of an options provider: test name to options.
inline platform::Value testOptions(std::initializer_list<std::pair<std::string, JTKOptions>> tests) {
    platform::ValueDictionary table;
    for (const auto& [test, options] : tests) table.emplace_back(test, options.value());
    return table;
}

}  // namespace jtk
