// The main-thread step: work that reads or changes UI state runs inline on
// the main thread, or is handed to the main queue while the caller waits.
// An exception thrown by the work (a failed test among them) is caught on the
// main thread and thrown again on the caller's.
#pragma once

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

#include "JTK/platform/Dispatch.h"
#include "run/JTKTestFailure.h"

namespace jtk {

template <class Work>
auto jtkOnMainThread(Work&& work) -> std::invoke_result_t<Work&> {
    using Result = std::invoke_result_t<Work&>;
    if (platform::isMainThread()) return work();
    bool failuresThrow = jtkTestFailuresThrow();
    std::exception_ptr thrown;
    if constexpr (std::is_void_v<Result>) {
        platform::dispatchSyncMain([&] {
            JTKFailuresThrowScope scope(failuresThrow);
            try {
                work();
            } catch (...) {
                thrown = std::current_exception();
            }
        });
        if (thrown) std::rethrow_exception(thrown);
    } else {
        std::optional<Result> result;
        platform::dispatchSyncMain([&] {
            JTKFailuresThrowScope scope(failuresThrow);
            try {
                result.emplace(work());
            } catch (...) {
                thrown = std::current_exception();
            }
        });
        if (thrown) std::rethrow_exception(thrown);
        return std::move(*result);
    }
}

}  // namespace jtk
