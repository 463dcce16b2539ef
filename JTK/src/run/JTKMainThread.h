// The main-thread step: work that reads or changes UI state runs inline on
// the main thread, or is handed to the main queue while the caller waits.
#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "JTK/platform/Dispatch.h"

namespace jtk {

template <class Work>
auto jtkOnMainThread(Work&& work) -> std::invoke_result_t<Work&> {
    using Result = std::invoke_result_t<Work&>;
    if (platform::isMainThread()) return work();
    if constexpr (std::is_void_v<Result>) {
        platform::dispatchSyncMain([&] { work(); });
    } else {
        std::optional<Result> result;
        platform::dispatchSyncMain([&] { result.emplace(work()); });
        return std::move(*result);
    }
}

}  // namespace jtk
