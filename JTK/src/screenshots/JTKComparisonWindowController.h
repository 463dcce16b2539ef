// The comparison window: shows the differing captures of a version folder one
// by one and lets a person accept them.
#pragma once

#include <filesystem>

namespace jtk {

class JTKComparisonWindowController {
public:
    // The one controller of the process, created on first use (main thread).
    static JTKComparisonWindowController& shared();
    // Main thread only.
    void showComparisons(const std::filesystem::path& versionFolder);
};

}  // namespace jtk
